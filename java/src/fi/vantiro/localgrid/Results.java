package fi.vantiro.localgrid;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Collection;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.stream.Collectors;

/** The results of one project: one archive for each ended job. */
public final class Results {
    private final ProjectDirectory project;
    private final Set<Integer> packed = new TreeSet<>();
    private final Map<Integer, Path> downloaded = new TreeMap<>();
    private final List<String> streamed = new ArrayList<>();
    private Path downloadDir;
    private Path unzipDir;
    private boolean stream;

    Results(ProjectDirectory project, Settings settings) {
        this.project = project;
        // Projects that share a directory of the settings must not overwrite each other's archives.
        String own = "project-" + project.number();
        downloadDir = settings.downloadDir == null ? null : settings.downloadDir.resolve(own);
        unzipDir = settings.unzipDir == null ? null : settings.unzipDir.resolve(own);
    }

    private Path store() {
        return project.results();
    }

    /** Packs the outputs of a job that has ended. */
    void add(int job, Path root, Collection<String> outputs) throws GridException, IOException {
        Archives.pack(store().resolve(name(job)), root, outputs);
        synchronized (this) {
            packed.add(job);
            if (stream) {
                stream(job);
            }
        }
    }

    public synchronized void setDownloadDir(String directory) {
        downloadDir = Arguments.path(directory);
    }

    public synchronized void setUnzipDir(String directory) {
        unzipDir = Arguments.path(directory);
    }

    /** Where the archives are: the download directory, or the grid's own while there is none. */
    public synchronized Path directory() {
        return downloadDir == null ? store() : downloadDir;
    }

    /** Hands over each archive as soon as it is packed, those that are packed already included. */
    public synchronized void setStream(boolean on) throws GridException, IOException {
        stream = on;
        if (on) {
            for (int job : packed) {
                stream(job);
            }
        }
    }

    private void stream(int job) throws GridException, IOException {
        if (!streamed.contains(name(job))) {
            if (downloadDir != null) {
                download(job);
            }
            streamed.add(name(job));
        }
    }

    /** The names of the archives that were streamed, in the order in which their jobs ended. */
    public synchronized List<String> streamedNames() {
        return new ArrayList<>(streamed);
    }

    /** The names of the archives that can be downloaded, in the order of their jobs. */
    public synchronized List<String> names() {
        return available().stream().map(Results::name).collect(Collectors.toList());
    }

    /** Copies the available archives to the download directory; how many. */
    public synchronized int download() throws GridException, IOException {
        if (downloadDir == null) {
            throw new GridException(Status.WRONG_STATE, "no download directory is set");
        }
        for (int job : available()) {
            download(job);
        }
        return available().size();
    }

    /** Copies the archives that were not copied yet, when there is a directory for them. */
    synchronized void downloadNew() throws IOException {
        for (int job : available()) {
            if (downloadDir != null && !downloaded.containsKey(job)) {
                download(job);
            }
        }
    }

    private void download(int job) throws IOException {
        Path target = downloadDir.resolve(name(job));
        Trees.copy(store().resolve(name(job)), target);
        downloaded.put(job, target);
    }

    /**
     * Unpacks what was downloaded, each archive into a directory of its own; the number of files.
     */
    public synchronized int unzip() throws GridException, IOException {
        if (downloaded.isEmpty()) {
            throw new GridException(Status.WRONG_STATE, "nothing was downloaded yet");
        }
        int files = 0;
        for (Map.Entry<Integer, Path> archive : downloaded.entrySet()) {
            Path base = unzipDir == null ? downloadDir : unzipDir;
            files += Archives.unpack(
                    archive.getValue(), base.resolve("job-" + archive.getKey()), name -> true);
        }
        return files;
    }

    /** Unpacks any archive, or one entry of it, into a directory; the number of files. */
    public static int unzip(String archive, String directory, String entry)
            throws GridException, IOException {
        int files = Archives.unpack(Arguments.path(archive), Arguments.path(directory),
                name -> Arguments.isEmpty(entry) || name.equals(entry));
        if (files == 0 && !Arguments.isEmpty(entry)) {
            throw new GridException(
                    Status.NOT_FOUND, "there is no file " + entry + " in " + archive);
        }
        return files;
    }

    /** One archive with the outputs of all jobs, each job's below a directory of its own. */
    public synchronized Path merged() throws IOException {
        Path archive = store().resolve("results.zip");
        merge(archive);
        return archive;
    }

    synchronized void merge(Path archive) throws IOException {
        Map<String, Path> parts = new LinkedHashMap<>();
        for (int job : available()) {
            parts.put("job-" + job, store().resolve(name(job)));
        }
        Archives.merge(archive, parts);
    }

    private List<Integer> available() {
        return packed.stream()
                .filter(job -> Files.exists(store().resolve(name(job))))
                .collect(Collectors.toList());
    }

    private static String name(int job) {
        return "job-" + job + ".zip";
    }
}
