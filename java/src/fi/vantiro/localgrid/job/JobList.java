package fi.vantiro.localgrid.job;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.function.Consumer;

/** The jobs of a project and how many are in each state; the project guards it. */
public final class JobList {
    private static final int FAILURES_TOLD = 10;

    private final List<Job> jobs = new ArrayList<>();
    private final TreeMap<Integer, String> failures = new TreeMap<>();
    private final int[] counts = new int[Job.State.values().length];

    public Job add(List<String> command) {
        Job job = new Job(jobs.size() + 1, command);
        jobs.add(job);
        counts[job.state.ordinal()]++;
        return job;
    }

    /** Takes back the job that was added last. */
    public void removeLast() {
        Job job = jobs.remove(jobs.size() - 1);
        counts[job.state.ordinal()]--;
    }

    public int size() {
        return jobs.size();
    }

    /** The job of that number, which must exist. */
    public Job get(long number) {
        if (number < 1 || number > jobs.size()) {
            throw new IllegalArgumentException("there is no job " + number);
        }
        return jobs.get((int) number - 1);
    }

    public void forEach(Consumer<Job> action) {
        jobs.forEach(action);
    }

    public void move(Job job, Job.State state) {
        counts[job.state.ordinal()]--;
        counts[state.ordinal()]++;
        job.state = state;
    }

    public int count(Job.State state) {
        return counts[state.ordinal()];
    }

    public int ended() {
        return jobs.size() - count(Job.State.WAITING) - count(Job.State.RUNNING);
    }

    /** Keeps what is said of a failed job when it is among the first. */
    public void addFailure(Job job, String text) {
        failures.put(job.number, text);
        if (failures.size() > FAILURES_TOLD) {
            failures.pollLastEntry();
        }
    }

    /** The number of jobs in all and in each state. */
    public Map<String, Long> statistics() {
        Map<String, Long> values = new LinkedHashMap<>();
        values.put("jobs", (long) jobs.size());
        values.put("waiting", (long) count(Job.State.WAITING));
        values.put("running", (long) count(Job.State.RUNNING));
        values.put("completed", (long) count(Job.State.COMPLETED));
        values.put("failed", (long) count(Job.State.FAILED));
        return values;
    }

    /** The failures of the jobs, a line or more each. */
    public String failures() {
        String told = String.join("\n", failures.values());
        int untold = count(Job.State.FAILED) - FAILURES_TOLD;
        return untold > 0 ? told + "\nand " + untold + " more jobs failed" : told;
    }
}
