package fi.vantiro.localgrid.home;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.bundle.BundleStore;
import fi.vantiro.localgrid.files.KernelLock;
import fi.vantiro.localgrid.files.Trees;
import fi.vantiro.localgrid.settings.Settings;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.AccessDeniedException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFilePermission;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.logging.Level;
import java.util.logging.Logger;

/**
 * The grid's directory on disk, which is its user's alone; several programs may share it, also on
 * several machines. A program is known by a file that it keeps locked as long as it lives.
 */
public final class GridHome {
    private static final Logger LOG = Logger.getLogger(Log.NAME);
    /** The program's own byte of its file, and one for processes that may outlive it. */
    private static final int OWNER_BYTES = 2;
    private static final Integer ADMINISTRATOR = 0;
    /** The locks of this program by the homes that it uses, and how many use each. */
    private static final Map<Path, KernelLock> OWN = new HashMap<>();
    private static final Map<Path, Integer> USERS = new HashMap<>();

    private final Path root;
    private final Path projects;
    private final Path owners;
    private final Path removed;
    private final Trash trash;
    private boolean warned;
    private Path owned;

    public GridHome(Path root) {
        this.root = root;
        projects = root.resolve("projects");
        owners = root.resolve("owners");
        removed = root.resolve("removed");
        trash = new Trash(root);
    }

    /** Makes the directory; a failure unless files can be written there that nobody can replace. */
    public void check() throws GridException, IOException {
        try {
            for (Path directory : new Path[] {root, projects, owners, removed}) {
                Trees.createPrivate(directory);
            }
            exclusively(() -> {
                probe();
                return null;
            });
            warnOfOthers();
        } catch (IOException e) {
            throw new GridException(Status.IO_ERROR,
                    "cannot write to the grid home " + root + ": " + GridException.text(e));
        }
    }

    private void probe() throws GridException, IOException {
        Path probe = Files.createTempFile(removed, "probe", "");
        try {
            Files.write(probe, new byte[1 << 12]);
            checkOwner(Files.getAttribute(probe, "unix:uid"));
        } finally {
            Files.deleteIfExists(probe);
        }
    }

    private void checkOwner(Object user) throws GridException, IOException {
        Object owner = Files.getAttribute(root, "unix:uid");
        if (!owner.equals(ADMINISTRATOR) && !owner.equals(user)) {
            throw new GridException(Status.IO_ERROR,
                    "the grid home " + root + " belongs to " + Files.getOwner(root)
                            + "; name another one as " + Settings.HOME);
        }
    }

    private synchronized void warnOfOthers() throws IOException {
        Set<PosixFilePermission> permissions = Files.getPosixFilePermissions(root);
        boolean sticky = ((Integer) Files.getAttribute(root, "unix:mode") & 01000) != 0;
        if (!warned && !sticky
                && (permissions.contains(PosixFilePermission.GROUP_WRITE)
                        || permissions.contains(PosixFilePermission.OTHERS_WRITE))) {
            LOG.warning("others may change the grid home " + root + "; chmod 700 prevents it");
        }
        warned = true;
    }

    public BundleStore bundles() {
        return new BundleStore(root.resolve("bundles"));
    }

    private <T> T exclusively(KernelLock.Work<T> work) throws GridException, IOException {
        return KernelLock.exclusively(root.resolve("lock"), work);
    }

    /** The file whose first byte this program keeps locked; its projects name it as their owner. */
    public Path ownerLock() throws GridException, IOException {
        synchronized (OWN) {
            Path home = root.toRealPath();
            KernelLock own = OWN.get(home);
            if (own == null || !Files.exists(own.file(), LinkOption.NOFOLLOW_LINKS)) {
                if (own != null) {
                    // Somebody removed the home, and it was made anew.
                    OWN.remove(home).close();
                }
                own = exclusively(() -> {
                    removeDeadOwners();
                    return KernelLock.tryLock(Files.createTempFile(owners, "", ""), 1);
                });
                OWN.put(home, own);
            }
            return own.file();
        }
    }

    /** Takes the home into use: this program keeps its file there locked until it disowns it. */
    public void own() throws GridException, IOException {
        synchronized (OWN) {
            ownerLock();
            owned = root.toRealPath();
            USERS.merge(owned, 1, Integer::sum);
        }
    }

    /** The opposite: what the program leaves there is that of one that is gone. */
    public void disown() {
        synchronized (OWN) {
            if (USERS.merge(owned, -1, Integer::sum) == 0) {
                USERS.remove(owned);
                try {
                    OWN.remove(owned).close();
                } catch (IOException e) {
                    LOG.log(Level.WARNING, "cannot give up " + owned, e);
                }
            }
        }
    }

    /** The name of this program's file, null when it has none yet. */
    private String ownName() throws IOException {
        synchronized (OWN) {
            KernelLock own = OWN.get(root.toRealPath());
            return own == null ? null : own.file().getFileName().toString();
        }
    }

    /** The names of the owners that live. What no owner has locked is removed. */
    private Set<String> removeDeadOwners() throws GridException, IOException {
        Set<String> living = new HashSet<>();
        for (Path owner : Trees.list(owners, "*")) {
            if (isAlive(owner)) {
                living.add(owner.getFileName().toString());
            } else {
                Files.delete(owner);
            }
        }
        return living;
    }

    /** Nothing is taken from an owner of whom nothing can be known. */
    private static boolean isAlive(Path owner) throws GridException, IOException {
        try {
            return KernelLock.isHeld(owner, OWNER_BYTES);
        } catch (AccessDeniedException e) {
            return true;
        }
    }

    /** A directory for a new project, with a number that no other project here had. */
    public ProjectDirectory newProject() throws GridException, IOException {
        check();
        String owner = ownerLock().getFileName().toString();
        return exclusively(() -> ProjectDirectory.create(free(), trash, owner));
    }

    /** The path of the next project. */
    private Path free() throws IOException {
        int number = lastNumber();
        do {
            number++;
        } while (Files.exists(path(number)));
        Files.write(last(), String.valueOf(number).getBytes(StandardCharsets.US_ASCII));
        return path(number);
    }

    private Path path(int number) {
        return projects.resolve(String.valueOf(number));
    }

    private Path last() {
        return root.resolve("last");
    }

    private int lastNumber() throws IOException {
        String text = Files.exists(last())
                ? new String(Files.readAllBytes(last()), StandardCharsets.US_ASCII)
                : "";
        if (text.matches("\\d{1,9}")) {
            return Integer.parseInt(text);
        }
        int number = 0;
        for (ProjectDirectory project : projects()) {
            number = Math.max(number, project.number());
        }
        return number;
    }

    /** Gives a project another number, which no project of a program that lives may have. */
    public void renumber(ProjectDirectory project, int number) throws GridException, IOException {
        if (number < 0) {
            throw new GridException(
                    Status.UNKNOWN_VALUE, "a project's number is 0 or more, not " + number);
        }
        String own = ownerLock().getFileName().toString();
        exclusively(() -> {
            ProjectDirectory other = new ProjectDirectory(path(number), trash);
            if (number != project.number() && other.exists()) {
                if (other.owner().equals(own) || removeDeadOwners().contains(other.owner())) {
                    throw new GridException(Status.WRONG_STATE,
                            "there is a project of number " + number + " already");
                }
                other.moveTo(free());
            }
            project.moveTo(path(number));
            return null;
        });
    }

    /** Removes what projects that are no longer active left; the number of directories removed. */
    public int cleanup(boolean results) throws GridException, IOException {
        if (!Files.isDirectory(removed)) {
            return 0;
        }
        // Nothing is written: what is removed may be what fills the disk.
        String own = ownName();
        List<Path> trees = new ArrayList<>();
        int count = exclusively(() -> {
            Set<String> living = removeDeadOwners();
            int directories = 0;
            for (ProjectDirectory project : projects()) {
                directories += discard(project, own, living, results);
            }
            trees.addAll(trash.trees());
            return directories;
        });
        for (Path tree : trees) {
            trash.delete(tree);
        }
        bundles().cleanup();
        return count;
    }

    /** Takes away what a project left that is no longer active; one that fails keeps no other. */
    private static int discard(
            ProjectDirectory project, String own, Set<String> living, boolean results) {
        try {
            String owner = project.owner();
            if (owner.equals(own) ? !project.isEnded() : living.contains(owner)) {
                return 0;
            }
            return results || owner.isEmpty() ? project.discard() : project.discardWork();
        } catch (IOException e) {
            LOG.warning(
                    "cannot clean up project " + project.number() + ": " + GridException.text(e));
            return 0;
        }
    }

    private List<ProjectDirectory> projects() throws IOException {
        List<ProjectDirectory> found = new ArrayList<>();
        for (Path path : Trees.list(projects, "[0-9]*")) {
            if (path.getFileName().toString().matches("\\d{1,10}")) {
                found.add(new ProjectDirectory(path, trash));
            }
        }
        return found;
    }
}
