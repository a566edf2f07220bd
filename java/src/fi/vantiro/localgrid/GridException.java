package fi.vantiro.localgrid;

import java.io.IOException;
import java.nio.file.AccessDeniedException;
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
        String text = e.getMessage() == null ? e.getClass().getSimpleName() : e.getMessage();
        return new GridException(Status.IO_ERROR, text);
    }

    /** The result code of the failure. */
    public Status status() {
        return status;
    }
}
