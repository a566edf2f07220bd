package fi.vantiro.localgrid.bundle;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.NativeText;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Archives;
import fi.vantiro.localgrid.files.Trees;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayDeque;
import java.util.Arrays;
import java.util.Deque;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.jar.JarFile;
import java.util.jar.Manifest;

/** The bundles that a project creates, and those that its jobs use. */
public final class ProjectBundles {
    private final BundleStore store;
    /** The bundles whose files each job finds, the one the project chose before its imports. */
    private final Map<String, BundleInfo> used = new LinkedHashMap<>();
    private BundleInfo chosen;
    private BundleInfo lastCreated;
    private Path lastArchive;

    public ProjectBundles(BundleStore store) {
        this.store = store;
    }

    /**
     * Writes a bundle of files of this machine into a directory; its id. With a signer the manifest
     * also holds the digest of each file.
     */
    public synchronized int create(BundleInfo info, String directory, String base, String[] files,
            String signer, String algorithm) throws GridException, IOException {
        Map<String, Path> entries = entries(Arguments.path(base), files);
        if (!info.executable.isEmpty() && !entries.containsKey(info.executable)) {
            throw new GridException(Status.NOT_FOUND,
                    "the executable " + info.executable + " is not among the files of the bundle");
        }
        Manifest manifest = BundleArchive.manifest();
        info.write(manifest.getMainAttributes());
        if (signer != null) {
            if (signer.isEmpty()) {
                throw new IllegalArgumentException("the signer's name is missing");
            }
            BundleArchive.sign(manifest, BundleArchive.contents(entries), signer, algorithm);
        }
        Path archive = Arguments.path(directory).resolve(info.fileName());
        BundleArchive.write(archive, manifest, BundleArchive.contents(entries));
        lastCreated = info;
        lastArchive = archive;
        return info.id();
    }

    private static Map<String, Path> entries(Path base, String[] files) throws GridException {
        Map<String, Path> entries = new LinkedHashMap<>();
        for (String name : Arguments.list(files, "files")) {
            Path file = base.resolve(NativeText.checked(name)).normalize();
            if (!Files.isRegularFile(file) || !Files.isReadable(file)) {
                throw new GridException(Status.NOT_FOUND, "cannot read file " + file);
            }
            boolean below = file.startsWith(base);
            Path entry = below ? base.relativize(file) : file.getFileName();
            Path other = entries.put(entry.toString(), file);
            if (other != null && !other.equals(file)) {
                throw new IllegalArgumentException(other + " and " + file + " would both be "
                        + entry
                        + " in the bundle; files below the base directory keep their paths");
            }
        }
        return entries;
    }

    /** The name, with its prefix, of the bundle created last; null when there is none. */
    public synchronized String lastCreatedName() {
        return lastCreated == null ? null : lastCreated.qualifiedName();
    }

    /** Uploads the bundle created last. */
    public synchronized void upload() throws GridException, IOException {
        if (lastArchive == null) {
            throw new GridException(Status.WRONG_STATE, "no bundle was created yet");
        }
        store.upload(lastArchive);
    }

    public void upload(String archive) throws GridException, IOException {
        store.upload(Arguments.path(archive));
    }

    public int approve() throws GridException, IOException {
        return store.approve();
    }

    /** Puts the files of the newest version of a bundle before each job that starts from now on. */
    public void use(String name) throws GridException, IOException {
        choose(store.newest(Arguments.required(name, "the bundle's name")));
    }

    public void use(String prefix, String name) throws GridException, IOException {
        Arguments.required(name, "the bundle's name");
        choose(store.newest("bundle " + name + " with the prefix " + prefix,
                info -> info.name.equals(name) && info.prefix.equals(Arguments.orEmpty(prefix))));
    }

    public void use(int id) throws GridException, IOException {
        choose(store.newest("bundle with the id " + id, info -> info.id() == id));
    }

    /** The id of the bundle in use, 0 when there is none. */
    public synchronized int usedId() {
        return chosen == null ? 0 : chosen.id();
    }

    /** The program that the bundle in use brings along, "" when there is none. */
    public synchronized String executable() {
        return chosen == null ? "" : chosen.executable;
    }

    private synchronized void choose(BundleInfo info) throws GridException, IOException {
        Map<String, BundleInfo> all = withImports(info);
        used.clear();
        used.putAll(all);
        chosen = info;
    }

    /** Has the jobs find a further bundle besides the chosen one. */
    public synchronized void addImport(String name) throws GridException, IOException {
        used.putAll(withImports(store.newest(name)));
    }

    private Map<String, BundleInfo> withImports(BundleInfo first)
            throws GridException, IOException {
        Map<String, BundleInfo> all = new LinkedHashMap<>();
        Deque<BundleInfo> left = new ArrayDeque<>(Arrays.asList(first));
        while (!left.isEmpty()) {
            BundleInfo info = left.remove();
            if (all.put(info.fileName(), info) == null) {
                for (String name : info.imports) {
                    left.add(store.newest(name));
                }
            }
        }
        return all;
    }

    /** Unpacks the bundles in use, imports first so that the chosen bundle's own files win. */
    public void place(Path directory) throws GridException, IOException {
        Deque<BundleInfo> reversed = new ArrayDeque<>();
        synchronized (this) {
            used.values().forEach(reversed::push);
        }
        for (BundleInfo info : reversed) {
            Archives.unpack(store.archive(info), directory,
                    name -> !name.equals(JarFile.MANIFEST_NAME) && !name.equals("META-INF/"));
            if (!info.executable.isEmpty()) {
                Trees.makeExecutable(directory.resolve(info.executable));
            }
        }
    }
}
