package fi.vantiro.localgrid.bundle;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Archives;
import fi.vantiro.localgrid.files.KernelLock;
import fi.vantiro.localgrid.files.Trees;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.util.ArrayList;
import java.util.Comparator;
import java.util.List;
import java.util.function.Predicate;

/** The bundles of a grid home: those uploaded, and those approved for use. */
public final class BundleStore {
    private final Path root;
    private final Path uploaded;
    private final Path approved;

    public BundleStore(Path root) {
        this.root = root;
        uploaded = root.resolve("uploaded");
        approved = root.resolve("approved");
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
            Archives.replace(uploaded.resolve(info.fileName()),
                    part -> Files.copy(archive, part, StandardCopyOption.REPLACE_EXISTING));
            return null;
        });
    }

    /** Makes all uploaded bundles usable; how many. */
    int approve() throws GridException, IOException {
        return exclusively(() -> {
            List<Path> archives = Trees.list(uploaded, "*.jar");
            for (Path archive : archives) {
                BundleArchive.verify(archive);
            }
            for (Path archive : archives) {
                Files.move(archive, approved.resolve(archive.getFileName()),
                        StandardCopyOption.REPLACE_EXISTING);
            }
            return archives.size();
        });
    }

    /** Removes what a program left that died while it uploaded. */
    public void cleanup() throws GridException, IOException {
        if (!Files.isDirectory(uploaded)) {
            return;
        }
        exclusively(() -> {
            for (Path part : Trees.list(uploaded, "*.part")) {
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
            BundleInfo info = BundleArchive.info(archive);
            if (condition.test(info)) {
                found.add(info);
            }
        }
        return found;
    }
}
