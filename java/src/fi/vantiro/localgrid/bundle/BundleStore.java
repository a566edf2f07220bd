package fi.vantiro.localgrid.bundle;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.AtomicFile;
import fi.vantiro.localgrid.files.KernelLock;
import fi.vantiro.localgrid.files.Trees;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Comparator;
import java.util.List;
import java.util.function.Predicate;
import java.util.logging.Logger;

/** The bundles of a grid home: those uploaded, and those approved for use. */
public final class BundleStore {
    private static final Logger LOG = Logger.getLogger(Log.NAME);

    private final Path root;
    private final Path uploaded;
    private final Path approved;
    private final Path damaged;

    public BundleStore(Path root) {
        this.root = root;
        uploaded = root.resolve("uploaded");
        approved = root.resolve("approved");
        damaged = root.resolve("damaged");
    }

    private <T> T exclusively(KernelLock.Work<T> work) throws GridException, IOException {
        Trees.createPrivate(uploaded);
        Trees.createPrivate(approved);
        return KernelLock.exclusively(root.resolve("lock"), work);
    }

    /** Takes a copy of an archive in, to be approved later. */
    void upload(Path archive) throws GridException, IOException {
        BundleInfo info = BundleArchive.verify(archive);
        exclusively(() -> {
            AtomicFile.write(uploaded.resolve(info.fileName()), out -> Files.copy(archive, out));
            return null;
        });
    }

    /**
     * Makes all uploaded bundles usable; how many. A damaged one is set aside, and an error only
     * when it is the only one: another program may have uploaded it.
     */
    int approve() throws GridException, IOException {
        return exclusively(() -> {
            int count = 0;
            GridException failure = null;
            for (Path archive : Trees.list(uploaded, "*.jar")) {
                try {
                    BundleArchive.verify(archive);
                    AtomicFile.moveInto(archive, approved.resolve(archive.getFileName()));
                    count++;
                } catch (GridException e) {
                    failure = e;
                    setAside(archive, e);
                }
            }
            if (failure != null && count == 0) {
                throw failure;
            }
            return count;
        });
    }

    private void setAside(Path archive, GridException why) throws IOException {
        Trees.createPrivate(damaged);
        AtomicFile.moveInto(archive, damaged.resolve(archive.getFileName()));
        LOG.warning(why.getMessage() + "; it is not approved, but moved to " + damaged);
    }

    /** Removes what a program left that died while it uploaded. */
    public void cleanup() throws GridException, IOException {
        if (!Files.isDirectory(uploaded)) {
            return;
        }
        exclusively(() -> {
            for (Path part : Trees.list(uploaded, "*" + AtomicFile.PART)) {
                Files.delete(part);
            }
            return null;
        });
    }

    /** Whether an approved bundle meets the condition. */
    public boolean exists(Predicate<BundleInfo> condition) throws GridException, IOException {
        return !approved(condition).isEmpty();
    }

    /** The newest approved bundle of that name that this machine can use. */
    BundleInfo newest(String name) throws GridException, IOException {
        return newest("bundle " + name, info -> info.hasName(name));
    }

    /** The newest approved bundle that meets the condition and that this machine can use. */
    BundleInfo newest(String what, Predicate<BundleInfo> condition)
            throws GridException, IOException {
        return approved(condition.and(info -> Platforms.fit(info.platform) >= 0))
                .stream()
                .max(Comparator.comparing((BundleInfo info)
                                                  -> info.version,
                                       BundleInfo::compareVersions)
                                .thenComparing(info -> Platforms.fit(info.platform)))
                .orElseThrow(()
                                     -> new GridException(Status.NO_SUCH_BUNDLE,
                                             "there is no approved " + what + " for this machine"));
    }

    Path archive(BundleInfo info) {
        return approved.resolve(info.fileName());
    }

    private List<BundleInfo> approved(Predicate<BundleInfo> condition)
            throws GridException, IOException {
        List<BundleInfo> found = new ArrayList<>();
        for (Path archive : Trees.list(approved, "*.jar")) {
            try {
                BundleInfo info = BundleArchive.info(archive);
                if (condition.test(info)) {
                    found.add(info);
                }
            } catch (GridException e) {
                LOG.warning(e.getMessage() + "; it is passed over");
            }
        }
        return found;
    }
}
