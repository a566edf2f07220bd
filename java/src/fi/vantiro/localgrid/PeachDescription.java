package fi.vantiro.localgrid;

import java.net.URI;
import java.nio.file.FileSystemNotFoundException;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** What a parallel-each run is to do, collected piece by piece. */
public final class PeachDescription {
    String name = "peach";
    String description = "";
    Path stateDir;
    Path resultFile;
    boolean messages;
    int priority;
    Integer projectId;
    int jobs;
    boolean allowPartial;
    boolean remove;
    /** Null leaves it to the grid's settings. */
    Boolean cleanup;
    boolean close;
    boolean stream;

    final List<InputFile> sources = new ArrayList<>();
    final Map<String, String> sourceExtras = new LinkedHashMap<>();

    String exeBundle = "";
    String executable = "";
    final InputGroup exe = new InputGroup();
    final List<String> exeImports = new ArrayList<>();
    final List<String> outputs = new ArrayList<>();

    private final List<InputGroup> dataBundles = new ArrayList<>();
    private String dataBundleName = "";

    final InputGroup jobInputs = new InputGroup();
    private final List<JobFiles> jobFiles = new ArrayList<>();
    private String[] jobFileNames = {};

    final InputGroup params = new InputGroup();
    final List<Path> externalResources = new ArrayList<>();
    final Map<String, String> projectParams = new LinkedHashMap<>();

    /** The files of one job, in their order, and the directory where the job finds them. */
    private static final class JobFiles {
        final String directory;
        final String[] files;

        JobFiles(String directory, String[] files) {
            this.directory = directory;
            this.files = files;
        }
    }

    List<InputGroup> dataBundles() {
        return dataBundles;
    }

    /** The data bundle that is being described; the first one needs no announcement. */
    InputGroup data() {
        if (dataBundles.isEmpty()) {
            newDataBundle("");
        }
        return dataBundles.get(dataBundles.size() - 1);
    }

    void newDataBundle(String bundleName) {
        dataBundleName = bundleName.isEmpty() ? "" : Arguments.inside(bundleName);
        dataBundles.add(new InputGroup());
    }

    void addDataFile(String directory, String file) {
        String separator = dataBundleName.isEmpty() || directory.isEmpty() ? "" : "/";
        data().add(InputFile.in(dataBundleName + separator + directory, file));
    }

    void addJobFiles(String directory, String... files) {
        for (String file : files) {
            InputFile.in(directory, file);
        }
        jobFiles.add(new JobFiles(directory, files));
    }

    void setJobFileNames(String[] names) {
        for (String each : names) {
            Arguments.inside(each);
        }
        jobFileNames = names.clone();
    }

    void addExternalResource(String resource) {
        try {
            boolean isUrl = resource.startsWith("file:");
            Path path = isUrl ? Paths.get(URI.create(resource)) : Paths.get(resource);
            if (path.isAbsolute() && path.getFileName() != null) {
                externalResources.add(path);
                return;
            }
        } catch (IllegalArgumentException | FileSystemNotFoundException e) {
            throw new IllegalArgumentException("not a file: URL: " + resource, e);
        }
        throw new IllegalArgumentException("neither an absolute path nor a file: URL: " + resource);
    }

    /** The number of jobs that the settings come to. */
    int jobCount() throws GridException {
        if (jobs > 0 && jobFiles.size() > jobs) {
            throw new GridException(Status.WRONG_STATE,
                    "there are files for " + jobFiles.size() + " jobs but only " + jobs
                            + " to run");
        }
        return jobs > 0 ? jobs : Math.max(1, jobFiles.size());
    }

    /** Gives each job its files under the names set for them. */
    void assignJobFiles() {
        int job = 0;
        for (JobFiles some : jobFiles) {
            job++;
            for (int i = 0; i < some.files.length; i++) {
                InputFile file = InputFile.in(some.directory, some.files[i]);
                if (i < jobFileNames.length) {
                    String separator = some.directory.isEmpty() ? "" : "/";
                    file = InputFile.named(
                            some.files[i], some.directory + separator + jobFileNames[i], "");
                }
                jobInputs.add(job, file);
            }
        }
    }
}
