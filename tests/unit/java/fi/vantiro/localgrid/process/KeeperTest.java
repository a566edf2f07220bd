package fi.vantiro.localgrid.process;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import fi.vantiro.localgrid.base.GridException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFilePermissions;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.concurrent.BlockingQueue;
import java.util.concurrent.LinkedBlockingQueue;
import java.util.concurrent.TimeUnit;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.Timeout;
import org.junit.jupiter.api.io.TempDir;

/** A program's side when its keeper lies, is another, is silent, or is gone. */
@Timeout(60)
class KeeperTest {
    private static final String READY = "say 'kind=ready' 'process=1' 'surroundings=a:1'\n";

    @TempDir Path folder;

    /** What happens to a job, in order. */
    private static final class Told implements Keeper.Client {
        final BlockingQueue<String> events = new LinkedBlockingQueue<>();

        @Override
        public void started() {
            events.add("started");
        }

        @Override
        public void ended(JobOutcome outcome) {
            events.add(outcome.ending + " " + outcome.why);
        }

        String next() throws InterruptedException {
            return String.valueOf(events.poll(30, TimeUnit.SECONDS));
        }
    }

    /** A keeper that does what the script says: `say FIELD...` answers, `await` waits for a job. */
    private Path liar(String script) throws Exception {
        Path program = folder.resolve("liar");
        String head = "#!/bin/bash\n"
                + "say() { printf '\\0\\0version=1\\0'; printf '%s\\0' \"$@\"; printf '\\0'; }\n"
                + "await() { while IFS= read -r -d '' field; do case $field in\n"
                + "  job=*) job=${field#job=} ;; argument=*) break ;; esac; done; }\n"
                + "[ $1 = serve ] || { echo $2 >>" + folder + "/woken; exit; }\n";
        Files.write(program, (head + script).getBytes(StandardCharsets.UTF_8));
        return Files.setPosixFilePermissions(program, PosixFilePermissions.fromString("rwx------"));
    }

    private Keeper start(String script) throws Exception {
        return Keeper.start(liar(script), folder.resolve("lock"));
    }

    private JobRequest job(String... arguments) {
        return new JobRequest(folder, 0, Collections.emptyMap(), Arrays.asList(arguments));
    }

    private String refusal(String script) {
        return assertThrows(GridException.class, () -> start(script)).getMessage();
    }

    @Test
    void isRefusedInWordsWhenItCannotServe() {
        assertTrue(refusal("exit 1").contains("has ended at once"));
        assertTrue(
                refusal("printf '0 ready\\0\\0'; cat >/dev/null").contains("of another release"));
        String other = refusal("printf 'version=2\\0kind=ready\\0\\0'; cat >/dev/null");
        assertTrue(other.contains("of another release") && other.contains("version=2"), other);
        assertTrue(refusal("say kind=refused 'why=no /proc'").endsWith("no /proc"));
    }

    @Test
    void cannotAnswerForAJobThatItDoesNotKnow() throws Exception {
        Told told = new Told();
        start(READY + "await\n"
                + "printf garbage; say kind=ended job=1 ending=exited status=0\n"
                + "printf 'x\\0\\0'; say kind=ended; say kind=started job=x; say kind=other\n"
                + "head -c 100000 /dev/zero | tr '\\0' x; printf '\\0=\\0\\0'\n"
                + "say kind=started job=$job; say kind=ended job=$job ending=exited status=0 "
                + "signal=0 cpu_ms=2147483648 wall_ms=1 peak_kb=1 why=; cat >/dev/null")
                .run(job("x"), told);
        assertEquals("started", told.next());
        assertEquals("EXITED ", told.next());
    }

    @Test
    void isNotBelievedButHeardWhenItsAnswerCannotBeRead() throws Exception {
        for (String answer : new String[] {"ending=exited", "ending=eaten status=0",
                     "ending=exited status=99999999999 signal=0"}) {
            Told told = new Told();
            start(READY + "await\nsay kind=ended job=$job " + answer + "; cat >/dev/null")
                    .run(job("x"), told);
            String event = told.next();
            assertTrue(event.startsWith("UNKEPT") && event.contains("cannot be read"), event);
        }
    }

    @Test
    void endsItsJobsWhenItIsGone() throws Exception {
        Told told = new Told();
        Keeper keeper = start(READY + "await\nprintf 'version=1\\0kind=en'");
        keeper.run(job("x"), told);
        String event = told.next();
        assertTrue(event.startsWith("UNKEPT") && event.contains("may still run"), event);
        assertTrue(keeper.isGone());
        assertThrows(GridException.class, () -> keeper.run(job("x"), told));
        keeper.stop(1);
    }

    @Test
    void tellsAJobOneEndWhenItGoesWhileItIsTold() throws Exception {
        Told told = new Told();
        // More than a pipe holds, so that the request breaks off after the end was heard.
        String large = String.join("", Collections.nCopies(200000, "x"));
        start(READY + "read -rn1; exec >&-; sleep 0.5").run(job(large), told);
        assertTrue(told.next().startsWith("UNKEPT"));
        assertTrue(told.events.isEmpty());
    }

    @Test
    void isHeardWhenTheHeapIsFull() throws Exception {
        Told told = new Told();
        Path full = folder.resolve("full");
        Keeper keeper = start(READY + "await\nwhile ! [ -e " + full
                + " ]; do sleep 0.02; done; sleep 0.5\n"
                + "say kind=ended job=$job ending=exited status=0 signal=0 cpu_ms=0 wall_ms=0 "
                + "peak_kb=0 why=" + String.join("", Collections.nCopies(3000, "x"))
                + "; cat >/dev/null");
        keeper.run(job("x"), told);
        Files.createFile(folder.resolve("filling"));
        assertTrue(isFilledWhile(
                () -> folder.resolve("filling").toFile().renameTo(full.toFile()), told.events));
        assertTrue(told.next().startsWith("EXITED"));
    }

    /** Holds all memory for a moment; whether nothing came meanwhile. */
    private static boolean isFilledWhile(Runnable work, BlockingQueue<String> events)
            throws InterruptedException {
        List<Object> held = new ArrayList<>();
        work.run();
        for (int size = 1 << 20; size > 0; size /= 2) {
            try {
                while (true) {
                    held.add(new byte[size]);
                }
            } catch (OutOfMemoryError e) {
                continue;
            }
        }
        Thread.sleep(1500);
        boolean nothing = events.isEmpty();
        held.clear();
        return nothing;
    }

    @Test
    void isWokenUpWhenItDoesNotAnswer() throws Exception {
        Path program = liar(READY + "await; cat >/dev/null");
        try (Keepers keepers = new Keepers(program, () -> folder.resolve("lock"), 0)) {
            keepers.ofThisMoment().run(job("x"), new Told());
            while (!Files.exists(folder.resolve("woken"))) {
                Thread.sleep(50);
            }
            assertEquals("1", Files.readAllLines(folder.resolve("woken")).get(0));
        }
    }
}
