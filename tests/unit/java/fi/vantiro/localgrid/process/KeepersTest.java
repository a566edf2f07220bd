package fi.vantiro.localgrid.process;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotSame;
import static org.junit.jupiter.api.Assertions.assertSame;
import static org.junit.jupiter.api.Assertions.assertTrue;

import fi.vantiro.localgrid.files.KernelLock;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.Arrays;
import java.util.Collections;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.TimeUnit;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.Timeout;
import org.junit.jupiter.api.io.TempDir;

/** The real keepers of a program. */
@Timeout(60)
class KeepersTest {
    @TempDir Path folder;
    private KernelLock lock;
    private Keepers keepers;

    @BeforeEach
    void open() throws Exception {
        lock = KernelLock.tryLock(folder.resolve("lock"), 1);
        keepers = new Keepers(Paths.get(System.getProperty("unit.keeper")), lock::file, 0);
    }

    @AfterEach
    void close() throws Exception {
        keepers.close();
        lock.close();
    }

    private JobOutcome outcome(Keeper keeper, long timeoutMillis, String line) throws Exception {
        CompletableFuture<JobOutcome> ended = new CompletableFuture<>();
        Path work = Files.createTempDirectory(folder, "work");
        keeper.run(new JobRequest(work, timeoutMillis, Collections.singletonMap("A", "b=c"),
                           Arrays.asList("/bin/sh", "-c", line)),
                new Keeper.Client() {
                    @Override
                    public void started() {}

                    @Override
                    public void ended(JobOutcome outcome) {
                        ended.complete(outcome);
                    }
                });
        return ended.get(30, TimeUnit.SECONDS);
    }

    @Test
    void tellHowAJobEnded() throws Exception {
        Keeper keeper = keepers.ofThisMoment();
        JobOutcome killed = outcome(keeper, Long.MAX_VALUE, "sleep 0.1; kill -SEGV $$");
        assertEquals(JobOutcome.Ending.EXITED, killed.ending);
        assertEquals(139, killed.status);
        assertEquals(11, killed.signal);
        assertTrue(killed.wallMillis >= 100, "" + killed.wallMillis);
        assertTrue(killed.peakKilobytes > 100, "" + killed.peakKilobytes);
        assertEquals(0, outcome(keeper, 2_147_484_000L, "[ $A = b=c ] && sleep 0.1").status);
        assertEquals(JobOutcome.Ending.TIMEOUT, outcome(keeper, 50, "sleep 60").ending);
    }

    @Test
    void areSharedByProjectsOfTheSameMomentAndEndWithTheLast() throws Exception {
        Keeper first = keepers.ofThisMoment();
        assertSame(first, keepers.ofThisMoment());
        keepers.release(first);
        assertEquals(0, outcome(first, 0, "true").status);
        keepers.release(first);
        awaitEnd(first);
        assertNotSame(first, keepers.ofThisMoment());
    }

    @Test
    void takeThePlaceOfOneThatWasKilled() throws Exception {
        ProjectKeeper own = new ProjectKeeper(keepers);
        own.take();
        Keeper first = own.get();
        assertEquals(JobOutcome.Ending.UNKEPT, outcome(first, 0, keeperIs("kill -KILL")).ending);
        awaitEnd(first);
        assertEquals(0, outcome(own.get(), 0, "true").status);
        own.giveBack();
        own.giveBack();
    }

    @Test
    void thatAreHaltedGoOn() throws Exception {
        Keeper keeper = keepers.ofThisMoment();
        assertEquals(3, outcome(keeper, 0, keeperIs("kill -STOP") + "; exit 3").status);
        // The supervisor: its timeout counts all the same.
        assertEquals(JobOutcome.Ending.TIMEOUT,
                outcome(keeper, 100, "kill -STOP $PPID; sleep 60").ending);
    }

    private static String keeperIs(String command) {
        return command + " $(sed 's/.*) . \\([0-9]*\\).*/\\1/' /proc/$PPID/stat)";
    }

    private static void awaitEnd(Keeper keeper) throws InterruptedException {
        while (!keeper.isGone()) {
            Thread.sleep(10);
        }
    }

    @Test
    void hearNothingOfAJobThatWritesIntoTheirPipes() throws Exception {
        Keeper keeper = keepers.ofThisMoment();
        String strangers = "for f in 0 1; do for p in $PPID "
                + "$(sed 's/.*) . \\([0-9]*\\).*/\\1/' /proc/$PPID/stat); do "
                + "printf 'garbage\\0\\0version=1\\0kind=ended\\0job=1\\0\\0x\\0' "
                + "2>/dev/null >/proc/$p/fd/$f; done; done; exit 5";
        assertEquals(5, outcome(keeper, 0, strangers).status);
        assertEquals(0, outcome(keeper, 0, "true").status);
        assertFalse(keeper.isGone());
    }
}
