package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.process.JobOutcome;

/** Whose jobs wait and run, and who learns what becomes of them. */
public interface JobOwner {
    /** The job of that number, which has its turn; null when it is not to run any more. */
    Job begin(int number, JobRun run);

    /** What is done for the jobs around their processes. */
    JobWork work();

    /** The job's own command runs; with a launcher this may be long after its turn. */
    void started(Job job);

    /** The job is over: how, null when it was never run, and why it failed, null for success. */
    void ended(Job job, JobOutcome outcome, String failure);
}
