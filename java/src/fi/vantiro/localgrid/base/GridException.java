package fi.vantiro.localgrid.base;

import java.io.FileNotFoundException;
import java.io.IOException;
import java.nio.file.AccessDeniedException;
import java.nio.file.DirectoryNotEmptyException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.FileSystemLoopException;
import java.nio.file.NoSuchFileException;
import java.nio.file.NotDirectoryException;

/** An ordinary failure: a result code and a text for the caller. */
public final class GridException extends Exception {
    private static final long serialVersionUID = 1L;

    private final Status status;

    public GridException(Status status, String message) {
        super(message);
        this.status = status;
    }

    /** Gives an I/O failure a text that can be read without knowing its Java class. */
    public static GridException of(IOException e) {
        Status status = e instanceof NoSuchFileException || e instanceof FileNotFoundException
                ? Status.NOT_FOUND
                : Status.IO_ERROR;
        if (!(e instanceof FileSystemException)) {
            String text = e.getMessage() == null ? "an input or output failed" : e.getMessage();
            return new GridException(status, text);
        }
        FileSystemException failure = (FileSystemException) e;
        String other = failure.getOtherFile() == null ? "" : " and " + failure.getOtherFile();
        return new GridException(status, reason(failure) + ": " + failure.getFile() + other);
    }

    private static String reason(FileSystemException e) {
        if (e instanceof NoSuchFileException) {
            return "no such file";
        }
        if (e instanceof AccessDeniedException) {
            return "no permission";
        }
        if (e instanceof FileAlreadyExistsException) {
            return "there is a file already";
        }
        if (e instanceof DirectoryNotEmptyException) {
            return "the directory is not empty";
        }
        if (e instanceof NotDirectoryException) {
            return "not a directory";
        }
        if (e instanceof FileSystemLoopException) {
            return "links lead in a circle";
        }
        return e.getReason() == null ? "an input or output failed" : e.getReason();
    }

    /** A text for the caller, of whatever was thrown; made without memory when there is none. */
    public static String text(Throwable thrown) {
        if (thrown instanceof OutOfMemoryError) {
            return "the Java runtime is out of memory or threads: _JAVA_OPTIONS=-Xmx512M gives "
                    + "it more, and what the calls of a thread left in it is freed when that "
                    + "thread detaches (DetachCurrentThread)";
        }
        if (thrown instanceof IOException) {
            return of((IOException) thrown).getMessage();
        }
        return thrown.getMessage() == null ? thrown.toString() : thrown.getMessage();
    }

    /** The result code of the failure. */
    public Status status() {
        return status;
    }
}
