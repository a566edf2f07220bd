package fi.vantiro.localgrid.peach;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.NativeText;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.bundle.Platforms;
import fi.vantiro.localgrid.job.WorkDirectory;
import java.net.URI;
import java.nio.file.FileSystemNotFoundException;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** What a parallel-each run is to do, collected piece by piece. */
public final class PeachDescription {
    public String name = "peach";
    public String description = "";
    public Path stateDir;
    public Path resultFile;
    public boolean messages;
    public int priority;
    public boolean allowPartial;
    public boolean remove;
    /** Null leaves it to the grid's settings. */
    public Boolean cleanup;
    public boolean close;
    public boolean stream;
    private int jobs;

    /** What every job has in its directory. */
    private final InputPlaces places = new InputPlaces();
    final List<InputFile> sources = new ArrayList<>();
    public final Map<String, String> sourceExtras = new LinkedHashMap<>();

    String exeBundle = "";
    public String executable = "";
    public final InputGroup exe = new InputGroup(places);
    /** The files of the executable by their places, and how specific each is to this machine. */
    private final Map<String, InputFile> exeFiles = new HashMap<>();
    private final Map<String, Integer> exeFits = new HashMap<>();
    public final List<String> exeImports = new ArrayList<>();
    final List<String> outputs = new ArrayList<>();

    private final List<InputGroup> dataBundles = new ArrayList<>();
    private String dataBundleName = "";

    public final InputGroup jobInputs = new InputGroup(places);
    private final List<JobFiles> jobFiles = new ArrayList<>();
    private String[] jobFileNames = {};

    public final InputGroup params = new InputGroup(places);
    final List<Path> externalResources = new ArrayList<>();
    public final Map<String, String> projectParams = new LinkedHashMap<>();

    /** The files of one job, in their order, and the directory where the job finds them. */
    private static final class JobFiles {
        final String directory;
        final String[] files;

        JobFiles(String directory, String[] files) {
            this.directory = directory;
            this.files = files;
        }
    }

    /** Sets the priority: low, normal, high or a number. */
    public void setPriority(String text) {
        int named = Arrays.asList("low", "normal", "high").indexOf(text);
        if (named < 0 && !Arguments.required(text, "the priority").matches("-?\\d{1,9}")) {
            throw Arguments.bad("the priority is low, normal, high or a number, not", text);
        }
        priority = named < 0 ? Integer.parseInt(text) : 10 * (named - 1);
    }

    public void setJobs(int number) {
        if (number < 1) {
            throw Arguments.bad("not a number of 1 or more", String.valueOf(number));
        }
        jobs = number;
    }

    public void addSource(String file) {
        sources.add(InputFile.in("", file));
    }

    public void setExeBundle(String bundleName) {
        if (bundleName.contains("/")) {
            throw Arguments.bad("not a bundle's name", bundleName);
        }
        exeBundle = bundleName;
    }

    /**
     * Adds a file of the executable, unless it is for another platform, or a better one is there.
     */
    public void addExeFile(String file, String target, String platform, String mode) {
        InputFile input = InputFile.named(file, target, mode);
        int fit = Platforms.fit(Platforms.known(platform));
        int present = exeFits.getOrDefault(input.target, fit);
        if (fit < 0 || fit < present) {
            return;
        }
        if (fit > present) {
            exe.remove(exeFiles.get(input.target));
        }
        exe.add(input);
        exeFiles.put(input.target, input);
        exeFits.put(input.target, fit);
    }

    public void addOutput(String text) {
        outputs.add(WorkDirectory.pattern(Arguments.required(text, "the output's name")));
    }

    public void addParamFile(String directory, String file) {
        params.add(InputFile.in(directory, file));
    }

    List<InputGroup> dataBundles() {
        return dataBundles;
    }

    /** The data bundle that is being described; the first one needs no announcement. */
    public InputGroup data() {
        if (dataBundles.isEmpty()) {
            newDataBundle("");
        }
        return dataBundles.get(dataBundles.size() - 1);
    }

    public void newDataBundle(String bundleName) {
        dataBundleName =
                bundleName.isEmpty() ? "" : Arguments.inside(bundleName.replaceAll("/+$", ""));
        dataBundles.add(new InputGroup(places));
    }

    public void addDataFile(String directory, String file) {
        String separator = dataBundleName.isEmpty() || directory.isEmpty() ? "" : "/";
        data().add(InputFile.in(dataBundleName + separator + directory, file));
    }

    public void addJobFiles(String directory, String[] files) {
        Arguments.list(files, "files");
        for (String file : files) {
            InputFile.in(directory, file);
        }
        jobFiles.add(new JobFiles(directory, files.clone()));
    }

    public void setJobFileNames(String[] names) {
        Arguments.list(names, "names");
        for (String each : names) {
            Arguments.inside(each);
        }
        jobFileNames = names.clone();
    }

    public void addExternalResource(String resource) {
        Path path;
        try {
            Arguments.required(resource, "the resource");
            boolean isUrl = resource.startsWith("file:");
            path = isUrl ? Paths.get(URI.create(resource))
                         : Paths.get(NativeText.checked(resource));
        } catch (IllegalArgumentException | FileSystemNotFoundException e) {
            throw Arguments.bad("not a path or file: URL (" + e.getMessage() + ")", resource);
        }
        if (!path.isAbsolute() || path.getFileName() == null) {
            throw Arguments.bad("neither an absolute path nor a file: URL", resource);
        }
        places.take(path.getFileName().toString(), path);
        externalResources.add(path);
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
            InputPlaces own = new InputPlaces(places);
            for (int i = 0; i < some.files.length; i++) {
                InputFile file = InputFile.in(some.directory, some.files[i]);
                if (i < jobFileNames.length) {
                    String separator = some.directory.isEmpty() ? "" : "/";
                    file = InputFile.named(
                            some.files[i], some.directory + separator + jobFileNames[i], "");
                }
                own.take(file.target, file.source);
                jobInputs.add(job, file);
            }
        }
    }
}
