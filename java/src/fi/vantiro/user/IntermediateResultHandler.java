package fi.vantiro.user;

/** Receives the intermediate results of a parallel-each run. */
public interface IntermediateResultHandler {
    /** Takes one result, on a thread of the grid. */
    void handle(String result);
}
