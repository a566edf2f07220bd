package fi.vantiro.user;

/** Receives the intermediate results of a parallel-each run. */
public interface IntermediateResultHandler {
    /** Takes one result, on the thread that executes the run. */
    void handle(String result);
}
