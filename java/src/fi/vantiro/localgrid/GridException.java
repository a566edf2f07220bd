package fi.vantiro.localgrid;

import java.io.IOException;
import java.nio.file.AccessDeniedException;
import java.nio.file.FileSystemException;
import java.nio.file.NoSuchFileException;

/** An ordinary failure: a result code and a text for the caller. */
public final class GridException extends Exception {
    private static final long serialVersionUID = 1L;

    private final Status status;

    GridException(Status status, String message) {
        super(message);
        this.status = status;
    }

    /** Gives an I/O failure a text that can be read without knowing its Java class. */
    static GridException of(IOException e) {
        if (e instanceof NoSuchFileException) {
            return new GridException(Status.NOT_FOUND, "no such file: " + e.getMessage());
        }
        if (e instanceof AccessDeniedException) {
            return new GridException(Status.IO_ERROR, "no permission: " + e.getMessage());
        }
        // A file system's exception often holds no more than the path.
        boolean bare = e instanceof FileSystemException
                ? ((FileSystemException) e).getReason() == null
                : e.getMessage() == null;
        return new GridException(Status.IO_ERROR, bare ? e.toString() : e.getMessage());
    }

    /** What is said of any trouble; made without memory when there is none. */
    static String text(Throwable trouble) {
        if (trouble instanceof OutOfMemoryError) {
            return "the Java runtime is out of memory or threads: give it more with "
                    + "JAVA_TOOL_OPTIONS=-Xmx..., and detach threads that made many calls";
        }
        if (trouble instanceof IOException) {
            return of((IOException) trouble).getMessage();
        }
        return trouble.getMessage() == null ? trouble.toString() : trouble.getMessage();
    }

    /** The result code of the failure. */
    public Status status() {
        return status;
    }
}
