package fi.vantiro.localgrid.peach;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.bundle.BundleArchive;
import fi.vantiro.localgrid.files.Trees;
import fi.vantiro.localgrid.home.StateDirectory;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.jar.JarFile;
import java.util.jar.Manifest;
import java.util.zip.ZipException;

/**
 * Input files of a run that belong together. They travel to the jobs in an archive of their own,
 * which is written again only when a file has changed, or as symbolic links.
 */
public final class InputGroup {
    /** The files by the jobs that get them; under 0 those that every job gets. */
    private final Map<Integer, List<InputFile>> files = new LinkedHashMap<>();
    public final Map<String, String> extras = new LinkedHashMap<>();
    public boolean copy = true;
    public boolean skipDigest;
    /** Open as long as jobs come for their files: its directory is read once. */
    private JarFile jar;

    boolean isEmpty() {
        return files.isEmpty();
    }

    public void add(InputFile file) {
        add(0, file);
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
        Map<String, Path> entries = new LinkedHashMap<>();
        files.forEach(
                (job, some) -> some.forEach(file -> entries.put(entry(job, file), file.source)));
        Path archive = state.claim(name);
        Map<String, BundleArchive.Content> contents = BundleArchive.contents(entries);
        Manifest manifest = BundleArchive.manifest();
        if (!skipDigest) {
            BundleArchive.sign(manifest, contents, "run", BundleArchive.ALGORITHM);
        }
        if (skipDigest || !manifest.getEntries().equals(recorded(archive))) {
            BundleArchive.write(archive, manifest, contents);
        }
        jar = new JarFile(archive.toFile(), false);
    }

    void close() throws IOException {
        if (jar != null) {
            jar.close();
        }
    }

    private static Object recorded(Path archive) throws IOException {
        if (!Files.isReadable(archive)) {
            return null;
        }
        try (JarFile jar = new JarFile(archive.toFile(), false)) {
            return jar.getManifest() == null ? null : jar.getManifest().getEntries();
        } catch (ZipException e) {
            // A damaged archive is as good as none: it is written again.
            return null;
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
            Path target = directory.resolve(file.target);
            Trees.create(target.getParent());
            try (InputStream in = jar.getInputStream(jar.getJarEntry(entry(job, file)))) {
                Files.copy(in, target, StandardCopyOption.REPLACE_EXISTING);
            }
            Files.setPosixFilePermissions(target, file.permissions());
        }
    }

    private static String entry(int job, InputFile file) {
        return (job == 0 ? "all/" : "job-" + job + "/") + file.target;
    }
}
