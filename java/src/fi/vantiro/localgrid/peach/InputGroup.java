package fi.vantiro.localgrid.peach;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.bundle.BundleArchive;
import fi.vantiro.localgrid.files.Archives;
import fi.vantiro.localgrid.files.Trees;
import fi.vantiro.localgrid.home.StateDirectory;
import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.jar.JarFile;

/**
 * Input files of a run that belong together. They travel to the jobs in an archive of their own,
 * which is written again only when a file has changed, or as symbolic links.
 */
public final class InputGroup {
    /** The files by the jobs that get them; under 0 those that every job gets. */
    private final Map<Integer, List<InputFile>> files = new LinkedHashMap<>();
    /** What every job has in its directory, from this group and others. */
    private final InputPlaces places;
    public final Map<String, String> extras = new LinkedHashMap<>();
    public boolean copy = true;
    public boolean skipDigest;
    /** Open as long as jobs come for their files: its directory is read once. */
    private JarFile jar;

    InputGroup(InputPlaces places) {
        this.places = places;
    }

    boolean isEmpty() {
        return files.isEmpty();
    }

    public void add(InputFile file) {
        places.take(file.target, file.source);
        add(0, file);
    }

    /** Takes a file out again. */
    void remove(InputFile file) {
        places.leave(file.target);
        files.get(0).remove(file);
    }

    void add(int job, InputFile file) {
        files.computeIfAbsent(job, number -> new ArrayList<>()).add(file);
    }

    void checkReadable() throws GridException {
        for (List<InputFile> some : files.values()) {
            for (InputFile file : some) {
                file.checkReadable();
            }
        }
    }

    /** Brings the archive in the state directory up to date. */
    void prepare(StateDirectory state, String name) throws GridException, IOException {
        if (files.isEmpty() || !copy) {
            state.remove(name);
            return;
        }
        Map<String, BundleArchive.Content> contents = new LinkedHashMap<>();
        files.forEach(
                (job, some)
                        -> some.forEach(file -> contents.put(entry(job, file), file.content())));
        Path archive = state.claim(name);
        if (skipDigest || !BundleArchive.hasInputs(archive, contents)) {
            BundleArchive.writeInputs(archive, contents, !skipDigest);
        }
        jar = new JarFile(archive.toFile(), false);
    }

    void close() throws IOException {
        if (jar != null) {
            jar.close();
        }
    }

    /** Puts a job's files into its working directory. */
    void place(int job, Path directory) throws IOException {
        placeAll(0, directory);
        placeAll(job, directory);
    }

    private void placeAll(int job, Path directory) throws IOException {
        if (!files.containsKey(job)) {
            return;
        }
        if (!copy) {
            for (InputFile file : files.get(job)) {
                Trees.link(file.source, directory.resolve(file.target));
            }
            return;
        }
        for (InputFile file : files.get(job)) {
            Archives.unpack(jar, jar.getEntry(entry(job, file)), directory.resolve(file.target));
        }
    }

    private static String entry(int job, InputFile file) {
        return (job == 0 ? "all/" : "job-" + job + "/") + file.target;
    }
}
