package fi.vantiro.localgrid.bundle;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Archives;
import fi.vantiro.localgrid.files.AtomicFile;
import fi.vantiro.localgrid.files.FileMode;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.DigestInputStream;
import java.security.MessageDigest;
import java.security.NoSuchAlgorithmException;
import java.util.Arrays;
import java.util.Base64;
import java.util.Collections;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.TreeMap;
import java.util.function.UnaryOperator;
import java.util.jar.Attributes;
import java.util.jar.JarFile;
import java.util.jar.JarOutputStream;
import java.util.jar.Manifest;
import java.util.zip.Deflater;
import java.util.zip.ZipEntry;
import java.util.zip.ZipException;
import java.util.zip.ZipOutputStream;

/** Jar archives whose manifest may hold a digest of each entry. */
public final class BundleArchive {
    /** The digest of archives whose maker names none. */
    public static final String ALGORITHM = "SHA-256";

    private static final String SIGNER = "Bundle-Signer";
    private static final String DIGEST = "Bundle-Digest";

    private BundleArchive() {}

    /** What is in an entry. */
    public interface Content {
        InputStream open() throws IOException;

        /** The extra field of the entry, which has the permissions of the file. */
        byte[] extra() throws IOException;
    }

    /**
     * The content of a file of this machine, with its own permissions when the mode is negative.
     */
    public static Content content(Path file, int mode) {
        return new Content() {
            @Override
            public InputStream open() throws IOException {
                return Files.newInputStream(file);
            }

            @Override
            public byte[] extra() throws IOException {
                return FileMode.field(mode < 0 ? FileMode.of(file) : FileMode.REGULAR | mode);
            }
        };
    }

    private static Content content(JarFile jar, ZipEntry entry) {
        return new Content() {
            @Override
            public InputStream open() throws IOException {
                return jar.getInputStream(entry);
            }

            @Override
            public byte[] extra() {
                return entry.getExtra();
            }
        };
    }

    /** The contents of the files of this machine by the names of their entries. */
    public static Map<String, Content> contents(Map<String, Path> files) {
        Map<String, Content> contents = new LinkedHashMap<>();
        files.forEach((entry, file) -> contents.put(entry, content(file, -1)));
        return contents;
    }

    /** The digests of contents by entry. */
    public static Map<String, String> digests(Map<String, Content> contents, String algorithm)
            throws GridException, IOException {
        Map<String, String> digests = new TreeMap<>();
        byte[] buffer = new byte[1 << 16];
        for (Map.Entry<String, Content> content : contents.entrySet()) {
            MessageDigest digest = digest(algorithm);
            try (InputStream in = new DigestInputStream(content.getValue().open(), digest)) {
                while (in.read(buffer) >= 0) {
                    continue;
                }
            }
            digests.put(content.getKey(), encoded(digest));
        }
        return digests;
    }

    private static String encoded(MessageDigest digest) {
        return Base64.getEncoder().encodeToString(digest.digest());
    }

    /** The digests that the manifest of a signed archive holds, by entry. */
    private static Map<String, String> recordedDigests(Manifest manifest, String algorithm) {
        Map<String, String> digests = new TreeMap<>();
        manifest.getEntries().forEach(
                (entry, attributes)
                        -> digests.put(entry, attributes.getValue(algorithm + "-Digest")));
        return digests;
    }

    public static Manifest manifest() {
        Manifest manifest = new Manifest();
        manifest.getMainAttributes().put(Attributes.Name.MANIFEST_VERSION, "1.0");
        return manifest;
    }

    public static void write(Path archive, Manifest manifest, Map<String, Content> contents)
            throws IOException {
        AtomicFile.write(archive, out -> {
            try (JarOutputStream jar = new JarOutputStream(out, manifest)) {
                for (Map.Entry<String, Content> content : contents.entrySet()) {
                    write(jar, content.getKey(), content.getValue(), in -> in);
                }
            }
        });
    }

    /** Writes an archive as fast as the disk takes it, with digests if they are wanted. */
    public static void writeInputs(Path archive, Map<String, Content> contents, boolean withDigests)
            throws GridException, IOException {
        MessageDigest digest = digest(ALGORITHM);
        Manifest manifest = manifest();
        AtomicFile.write(archive, out -> {
            try (ZipOutputStream zip = new ZipOutputStream(out)) {
                zip.setLevel(Deflater.NO_COMPRESSION);
                for (Map.Entry<String, Content> content : contents.entrySet()) {
                    write(zip, content.getKey(), content.getValue(),
                            in -> withDigests ? new DigestInputStream(in, digest) : in);
                    record(manifest, content.getKey(), encoded(digest), ALGORITHM);
                }
                zip.putNextEntry(new ZipEntry(JarFile.MANIFEST_NAME));
                manifest.write(zip);
            }
        });
    }

    private static void write(ZipOutputStream zip, String name, Content content,
            UnaryOperator<InputStream> through) throws IOException {
        try (InputStream in = through.apply(content.open())) {
            ZipEntry entry = new ZipEntry(name);
            entry.setExtra(content.extra());
            zip.putNextEntry(entry);
            Archives.copy(in, zip);
        }
    }

    /** Whether an archive that may be damaged or absent has these contents and permissions. */
    public static boolean hasInputs(Path archive, Map<String, Content> contents)
            throws GridException, IOException {
        if (!Files.isReadable(archive)) {
            return false;
        }
        try (JarFile jar = open(archive)) {
            if (jar.getManifest() == null || jar.size() != contents.size() + 1) {
                return false;
            }
            for (Map.Entry<String, Content> content : contents.entrySet()) {
                ZipEntry entry = jar.getEntry(content.getKey());
                if (entry == null || !Arrays.equals(entry.getExtra(), content.getValue().extra())) {
                    return false;
                }
            }
            return digests(contents, ALGORITHM)
                    .equals(recordedDigests(jar.getManifest(), ALGORITHM));
        } catch (GridException | ZipException e) {
            // It is written again.
            return false;
        }
    }

    /** Adds the signer's name and the digest of each entry to a manifest. */
    public static void sign(Manifest manifest, Map<String, Content> contents, String signer,
            String algorithm) throws GridException, IOException {
        manifest.getMainAttributes().putValue(SIGNER, signer);
        manifest.getMainAttributes().putValue(DIGEST, algorithm);
        manifest.getEntries().clear();
        digests(contents, algorithm)
                .forEach((entry, digest) -> record(manifest, entry, digest, algorithm));
    }

    private static void record(Manifest manifest, String entry, String digest, String algorithm) {
        Attributes attributes = new Attributes();
        attributes.putValue(algorithm + "-Digest", digest);
        manifest.getEntries().put(entry, attributes);
    }

    /** Signs an archive that exists already. */
    public static void sign(String archive, String signer) throws GridException, IOException {
        Path path = Arguments.path(archive);
        if (Arguments.isEmpty(signer)) {
            throw new IllegalArgumentException("the signer's name is missing");
        }
        try (JarFile jar = open(path)) {
            Manifest manifest = jar.getManifest() == null ? manifest() : jar.getManifest();
            Map<String, Content> contents = contents(jar);
            sign(manifest, contents, signer, ALGORITHM);
            write(path, manifest, contents);
        }
    }

    /** What an archive says about itself. */
    static BundleInfo info(Path archive) throws GridException, IOException {
        try (JarFile jar = open(archive)) {
            if (jar.getManifest() == null) {
                throw bad(archive, "has no manifest");
            }
            return BundleInfo.read(jar.getManifest().getMainAttributes());
        } catch (IllegalArgumentException e) {
            throw bad(archive, "is not a bundle: " + e.getMessage());
        }
    }

    /** The same, after a check of the digests of an archive that is signed. */
    static BundleInfo verify(Path archive) throws GridException, IOException {
        BundleInfo info = info(archive);
        try (JarFile jar = open(archive)) {
            Attributes attributes = jar.getManifest().getMainAttributes();
            String algorithm = String.valueOf(attributes.getValue(DIGEST));
            if (attributes.getValue(SIGNER) != null
                    && !digests(contents(jar), algorithm)
                                .equals(recordedDigests(jar.getManifest(), algorithm))) {
                throw bad(archive, "was altered after it was signed");
            }
            return info;
        } catch (ZipException e) {
            throw bad(archive, "is damaged: " + e.getMessage());
        }
    }

    private static Map<String, Content> contents(JarFile jar) {
        Map<String, Content> contents = new LinkedHashMap<>();
        for (ZipEntry entry : Collections.list(jar.entries())) {
            if (!entry.isDirectory() && !entry.getName().equals(JarFile.MANIFEST_NAME)) {
                contents.put(entry.getName(), content(jar, entry));
            }
        }
        return contents;
    }

    private static JarFile open(Path archive) throws GridException, IOException {
        if (!Files.isReadable(archive)) {
            throw new GridException(Status.NOT_FOUND, "cannot read archive " + archive);
        }
        try {
            return new JarFile(archive.toFile(), false);
        } catch (ZipException e) {
            throw bad(archive, "is damaged: " + e.getMessage());
        }
    }

    private static MessageDigest digest(String algorithm) throws GridException {
        try {
            return MessageDigest.getInstance(Arguments.required(algorithm, "the digest algorithm"));
        } catch (NoSuchAlgorithmException e) {
            throw new GridException(Status.UNKNOWN_VALUE, "unknown digest algorithm " + algorithm);
        }
    }

    private static GridException bad(Path archive, String what) {
        return new GridException(Status.BAD_ARCHIVE, "archive " + archive + " " + what);
    }
}
