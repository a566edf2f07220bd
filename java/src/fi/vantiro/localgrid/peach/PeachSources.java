package fi.vantiro.localgrid.peach;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.bundle.BundleArchive;
import fi.vantiro.localgrid.files.AtomicFile;
import fi.vantiro.localgrid.home.StateDirectory;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Properties;

/** The digests of a run's source files, kept in the state directory from run to run. */
final class PeachSources {
    private static final String RECORD = "sources.properties";

    private final Path record;
    private final Properties present = new Properties();

    PeachSources(Path stateDir, List<InputFile> files, Map<String, String> extras)
            throws GridException, IOException {
        record = stateDir.resolve(RECORD);
        Map<String, Path> paths = new LinkedHashMap<>();
        for (InputFile file : files) {
            file.checkReadable();
            paths.put(file.source.toString(), file.source);
        }
        BundleArchive.digests(BundleArchive.contents(paths), BundleArchive.ALGORITHM)
                .forEach((path, digest) -> present.setProperty("file." + path, digest));
        extras.forEach((key, value) -> present.setProperty("extra." + key, value));
    }

    /** Whether they differ from those of the last run in this directory. */
    boolean changed() throws IOException {
        Properties last = new Properties();
        if (Files.exists(record)) {
            try (InputStream in = Files.newInputStream(record)) {
                last.load(in);
            }
        }
        return !last.equals(present);
    }

    void save(StateDirectory state) throws GridException, IOException {
        AtomicFile.write(state.claim(RECORD), out -> present.store(out, null));
    }
}
