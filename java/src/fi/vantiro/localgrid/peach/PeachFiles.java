package fi.vantiro.localgrid.peach;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;

/** The result files of a parallel-each run, handed out one by one. */
final class PeachFiles {
    /** Files by their jobs, until they may be handed out. */
    private final Map<Integer, List<Path>> held = new TreeMap<>();
    private final List<Path> ready = new ArrayList<>();
    private final Set<Integer> processed = new TreeSet<>();
    private int handedOut;

    /** Keeps the files of a job until all are released. */
    synchronized void hold(int job, List<Path> files) {
        held.put(job, files);
    }

    /** Makes the kept files ready, in the order of their jobs. */
    synchronized void release() {
        held.values().forEach(ready::addAll);
        held.clear();
    }

    /** The next file, null when none is ready. */
    synchronized Path next() {
        return handedOut < ready.size() ? ready.get(handedOut++) : null;
    }

    /** Notes that the caller is through with the file of that number, the first one being 1. */
    synchronized void markProcessed(int number) {
        if (number < 1 || number > handedOut) {
            throw new IllegalArgumentException(
                    "no result file of number " + number + " was handed out");
        }
        processed.add(number);
    }

    synchronized void deleteProcessed() throws IOException {
        for (int number : processed) {
            Files.deleteIfExists(ready.get(number - 1));
        }
        processed.clear();
    }
}
