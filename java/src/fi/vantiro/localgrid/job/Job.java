package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.Arguments;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;

/** One job; its project guards the fields that change. */
public final class Job {
    public enum State {
        WAITING,
        RUNNING,
        COMPLETED,
        FAILED,
        STOPPED;

        public boolean ended() {
            return compareTo(RUNNING) > 0;
        }
    }

    private static final int MOST_TOLD = 1000;

    public final int number;
    final List<String> command;

    public State state = State.WAITING;
    /** What runs the job, from when it has its turn. */
    public JobRun run;

    /** Lines for its input that came before it ran; null for none. */
    private List<String> input;

    Job(int number, List<String> command) {
        this.number = number;
        this.command = command;
    }

    /** Keeps a line for its input until it runs. */
    public void addInput(String line) {
        if (input == null) {
            input = new ArrayList<>();
        }
        input.add(line);
    }

    List<String> input() {
        return input == null ? Collections.emptyList() : input;
    }

    /** The command of a job that is a line for the shell. */
    public static List<String> shellLine(String line) {
        return Arrays.asList("/bin/sh", "-c", line);
    }

    /** The command as its creator gave it, cut to what can be read without copying it all. */
    public String commandText() {
        boolean isLine = command.size() == 3 && command.equals(shellLine(command.get(2)));
        StringBuilder text = new StringBuilder();
        for (String word : isLine ? command.subList(2, 3) : command) {
            text.append(text.length() == 0 ? "" : " ").append(Arguments.shortened(word));
            if (text.length() > MOST_TOLD) {
                break;
            }
        }
        return Arguments.shortened(text.toString());
    }
}
