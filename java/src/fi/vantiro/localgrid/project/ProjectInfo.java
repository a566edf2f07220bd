package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.NativeText;
import java.util.LinkedHashMap;
import java.util.Map;

/** What a project is called, how urgent it is, and the values that its jobs find. */
public final class ProjectInfo {
    private static final String PARAM = "VANTIRO_PARAM_";

    private String name;
    private String description = "";
    private int priority;
    private int id;
    private final Map<String, String> params = new LinkedHashMap<>();

    ProjectInfo(String name, int priority, int id) {
        this.name = name;
        this.priority = priority;
        this.id = id;
    }

    /** Replaces what the project was created with. */
    public synchronized void describe(String newName, String newDescription, int newPriority) {
        name = newName;
        description = newDescription;
        priority = newPriority;
    }

    synchronized String name() {
        return name;
    }

    synchronized int priority() {
        return priority;
    }

    public synchronized int id() {
        return id;
    }

    synchronized void setId(int newId) {
        id = newId;
    }

    /** Sets parameters. */
    public synchronized void putParams(Map<String, String> values) {
        values.values().forEach(NativeText::checked);
        Map<String, String> all = new LinkedHashMap<>(params);
        all.putAll(values);
        Arguments.checkVariables(PARAM, all.keySet());
        params.putAll(values);
    }

    /** The parameters in the order in which they were first set. */
    public synchronized Map<String, String> params() {
        return new LinkedHashMap<>(params);
    }

    /** The project's variables in the environment of its jobs. */
    synchronized Map<String, String> environment() {
        Map<String, String> variables = new LinkedHashMap<>();
        variables.put("VANTIRO_PROJECT", String.valueOf(id));
        variables.put("VANTIRO_PRIORITY", String.valueOf(priority));
        params.forEach((key, value) -> variables.put(Arguments.variable(PARAM, key), value));
        return variables;
    }

    /** The beginning of a line for people, whose end tells of the jobs. */
    synchronized String description() {
        String title = description.isEmpty() ? name : name + ": " + description;
        return title + " (project " + id + ", priority " + priority;
    }

    @Override
    public synchronized String toString() {
        return "project " + id + " (" + Arguments.shortened(name) + ")";
    }
}
