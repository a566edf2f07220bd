package fi.vantiro.localgrid.bundle;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Archives;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.DigestInputStream;
import java.security.MessageDigest;
import java.security.NoSuchAlgorithmException;
import java.util.Base64;
import java.util.Collections;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.TreeMap;
import java.util.jar.Attributes;
import java.util.jar.JarFile;
import java.util.jar.JarOutputStream;
import java.util.jar.Manifest;
import java.util.zip.ZipEntry;
import java.util.zip.ZipException;

/** Jar archives whose manifest may hold a digest of each entry. */
public final class BundleArchive {
    /** The digest of archives whose maker names none. */
    public static final String ALGORITHM = "SHA-256";

    private static final String SIGNER = "Bundle-Signer";
    private static final String DIGEST = "Bundle-Digest";

    private BundleArchive() {}

    /** Opens the content of an entry. */
    @FunctionalInterface
    public interface Content {
        InputStream open() throws IOException;
    }

    /** The contents of the files of this machine by the names of their entries. */
    public static Map<String, Content> contents(Map<String, Path> files) {
        Map<String, Content> contents = new LinkedHashMap<>();
        files.forEach((entry, file) -> contents.put(entry, () -> Files.newInputStream(file)));
        return contents;
    }

    /** The digests of contents by entry. */
    public static Map<String, String> digests(Map<String, Content> contents, String algorithm)
            throws GridException, IOException {
        Map<String, String> digests = new TreeMap<>();
        byte[] buffer = new byte[1 << 13];
        for (Map.Entry<String, Content> content : contents.entrySet()) {
            MessageDigest digest = digest(algorithm);
            try (InputStream in = new DigestInputStream(content.getValue().open(), digest)) {
                while (in.read(buffer) >= 0) {
                    continue;
                }
            }
            digests.put(content.getKey(), Base64.getEncoder().encodeToString(digest.digest()));
        }
        return digests;
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
        byte[] buffer = new byte[1 << 13];
        Archives.replace(archive, part -> {
            try (JarOutputStream jar = new JarOutputStream(Files.newOutputStream(part), manifest)) {
                for (Map.Entry<String, Content> content : contents.entrySet()) {
                    jar.putNextEntry(new ZipEntry(content.getKey()));
                    try (InputStream in = content.getValue().open()) {
                        for (int n = in.read(buffer); n >= 0; n = in.read(buffer)) {
                            jar.write(buffer, 0, n);
                        }
                    }
                }
            }
        });
    }

    /** Adds the signer's name and the digest of each entry to a manifest. */
    public static void sign(Manifest manifest, Map<String, Content> contents, String signer,
            String algorithm) throws GridException, IOException {
        manifest.getMainAttributes().putValue(SIGNER, signer);
        manifest.getMainAttributes().putValue(DIGEST, algorithm);
        manifest.getEntries().clear();
        digests(contents, algorithm).forEach((entry, digest) -> {
            Attributes attributes = new Attributes();
            attributes.putValue(algorithm + "-Digest", digest);
            manifest.getEntries().put(entry, attributes);
        });
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
                contents.put(entry.getName(), () -> jar.getInputStream(entry));
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
