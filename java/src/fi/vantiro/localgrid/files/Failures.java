package fi.vantiro.localgrid.files;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import java.io.IOException;
import java.nio.file.AccessDeniedException;
import java.nio.file.FileSystemException;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/** Files with which something failed, and why; of many the first ones are told. */
public final class Failures {
    private static final int TOLD = 3;

    private final List<String> told = new ArrayList<>();
    private int count;

    public void add(Path file, IOException why) {
        if (count < TOLD) {
            told.add(Arguments.shortened(GridException.text(of(file, why))));
        }
        count++;
    }

    public boolean isEmpty() {
        return count == 0;
    }

    /** The same failure with the path that says most. */
    static FileSystemException of(Path file, IOException why) {
        if (why instanceof AccessDeniedException) {
            return new AccessDeniedException(file.toString());
        }
        if (why instanceof NoSuchFileException) {
            return new NoSuchFileException(file.toString());
        }
        String reason = why instanceof FileSystemException ? ((FileSystemException) why).getReason()
                                                           : why.getMessage();
        return new FileSystemException(file.toString(), null, reason);
    }

    @Override
    public String toString() {
        return String.join(", ", told) + (count > TOLD ? ", and " + (count - TOLD) + " more" : "");
    }
}
