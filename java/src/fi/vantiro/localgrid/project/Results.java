package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Archives;
import fi.vantiro.localgrid.files.AtomicFile;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.home.ProjectDirectory;
import fi.vantiro.localgrid.settings.Settings;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Collections;
import java.util.HashMap;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.logging.Logger;

/**
 * The results of one project: one archive for each ended job. Its monitor is never held while files
 * are read or written.
 */
public final class Results {
    private static final Logger LOG = Logger.getLogger(Log.NAME);

    private final ProjectDirectory project;
    private final Settings settings;
    /** The jobs that have results, in ascending order. */
    private final List<Integer> jobs = new ArrayList<>();
    /** How to pack those that have no archive yet. */
    private final Map<Integer, Packing> packings = new HashMap<>();
    private final Map<Integer, Path> downloaded = new TreeMap<>();
    private final Set<Integer> toDownload = new TreeSet<>();
    private final List<Integer> streamed = new ArrayList<>();
    private final Set<Integer> isStreamed = new HashSet<>();
    private Path downloadDir;
    private Path unzipDir;
    private boolean isDownloaded;
    private boolean isKeptBack;
    private boolean stream;

    /** Writes the archive of a job when somebody asks for it. */
    @FunctionalInterface
    public interface Packing {
        void to(Path archive) throws GridException, IOException;
    }

    Results(ProjectDirectory project, Settings settings) {
        this.project = project;
        this.settings = settings;
    }

    /** Packs the outputs of a job that has ended. */
    public void add(int job, Outputs outputs) throws IOException {
        Archives.pack(stored(job), outputs);
        addJob(job);
    }

    /** Takes note of a job that has ended, whose outputs are kept elsewhere. */
    public void add(int job, Packing packing) {
        synchronized (this) {
            packings.put(job, packing);
        }
        addJob(job);
    }

    private void addJob(int job) {
        synchronized (this) {
            int place = -1 - Collections.binarySearch(jobs, job);
            jobs.add(place, job);
            toDownload.add(job);
            if (!stream) {
                return;
            }
        }
        try {
            stream(job);
        } catch (GridException e) {
            keepBack(GridException.text(e));
        } catch (IOException e) {
            keepBack(GridException.text(e));
        }
    }

    /** The job has its results in the grid's home, where they can be downloaded from later. */
    private synchronized void keepBack(String why) {
        if (!isKeptBack) {
            isKeptBack = true;
            LOG.warning("results of project " + project.number() + " are not handed over, " + why
                    + "; they can be downloaded when that is mended");
        }
    }

    public synchronized void setDownloadDir(String directory) {
        downloadDir = Arguments.path(directory);
    }

    public synchronized void setUnzipDir(String directory) {
        unzipDir = Arguments.path(directory);
    }

    private synchronized Path downloadDir() {
        return downloadDir == null ? ofProject(settings.downloadDir) : downloadDir;
    }

    private synchronized Path unzipDir() {
        return unzipDir == null ? ofProject(settings.unzipDir) : unzipDir;
    }

    /** Projects that share a directory of the settings must not overwrite each other's archives. */
    private Path ofProject(Path directory) {
        return directory == null ? null : directory.resolve("project-" + project.number());
    }

    /** Where the archives are: the download directory, or the grid's own while there is none. */
    public Path directory() {
        Path directory = downloadDir();
        return directory == null ? project.results() : directory;
    }

    private Path stored(int job) {
        return project.results().resolve(fileName(job));
    }

    /** The archive of a job in the grid's own directory. */
    private Path archive(int job) throws GridException, IOException {
        Packing packing;
        synchronized (this) {
            packing = packings.get(job);
        }
        if (packing != null) {
            packing.to(stored(job));
            synchronized (this) {
                packings.remove(job);
            }
        }
        return stored(job);
    }

    /** Hands over each archive as soon as its job ends, those of ended jobs included. */
    public void setStream(boolean on) throws GridException, IOException {
        synchronized (this) {
            stream = on;
        }
        if (on) {
            for (int job : available()) {
                stream(job);
            }
        }
    }

    private void stream(int job) throws GridException, IOException {
        if (downloadDir() != null) {
            download(job);
        }
        synchronized (this) {
            if (isStreamed.add(job)) {
                streamed.add(job);
            }
        }
    }

    /** The number of archives that were streamed. */
    public synchronized int streamedCount() {
        return streamed.size();
    }

    /** The name of a streamed archive, in the order in which they were. */
    public synchronized String streamedName(int index) {
        return fileName(streamed.get(index));
    }

    private List<Integer> available() throws GridException {
        count();
        synchronized (this) {
            return new ArrayList<>(jobs);
        }
    }

    /** The number of archives that can be downloaded. */
    public synchronized int count() throws GridException {
        if (!jobs.isEmpty() && !project.exists()) {
            throw new GridException(Status.NOT_FOUND,
                    "the results of project " + project.number()
                            + " were removed from the grid home");
        }
        return jobs.size();
    }

    /** The name of an archive that can be downloaded, in the order of their jobs. */
    public synchronized String name(int index) {
        return fileName(jobs.get(index));
    }

    /** Copies the available archives to the download directory; how many. */
    public int download() throws GridException, IOException {
        if (downloadDir() == null) {
            throw new GridException(Status.WRONG_STATE, "no download directory is set");
        }
        List<Integer> all = available();
        for (int job : all) {
            download(job);
        }
        synchronized (this) {
            isDownloaded = true;
        }
        return all.size();
    }

    /** Copies the archives that were not copied yet, when there is a directory for them. */
    void downloadNew() throws GridException, IOException {
        List<Integer> missing;
        synchronized (this) {
            missing = new ArrayList<>(toDownload);
        }
        for (int job : missing) {
            if (downloadDir() != null) {
                download(job);
            }
        }
    }

    private void download(int job) throws GridException, IOException {
        Path archive = archive(job);
        Path target = downloadDir().resolve(fileName(job));
        project.claim(target.getParent());
        AtomicFile.write(target, out -> Files.copy(archive, out));
        synchronized (this) {
            isDownloaded = true;
            downloaded.put(job, target);
            toDownload.remove(job);
        }
    }

    /**
     * Unpacks what was downloaded, each archive into a directory of its own; the number of files.
     */
    public int unzip() throws GridException, IOException {
        Map<Integer, Path> archives;
        synchronized (this) {
            archives = new TreeMap<>(downloaded);
        }
        if (!isDownloaded) {
            throw new GridException(Status.WRONG_STATE, "nothing was downloaded yet");
        }
        Path base = unzipDir() == null ? downloadDir() : unzipDir();
        if (!archives.isEmpty()) {
            project.claim(base);
        }
        int files = 0;
        for (Map.Entry<Integer, Path> archive : archives.entrySet()) {
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
    public Path merged() throws GridException, IOException {
        Path archive = project.results().resolve("results.zip");
        merge(archive);
        return archive;
    }

    public void merge(Path archive) throws GridException, IOException {
        Map<String, Path> parts = new LinkedHashMap<>();
        for (int job : available()) {
            parts.put("job-" + job, archive(job));
        }
        Archives.merge(archive, parts);
    }

    private static String fileName(int job) {
        return "job-" + job + ".zip";
    }
}
