package fi.vantiro.user;

/** The parallel-each side of what the measured calls reach. */
public class PeachWrapper {
    public int get() {
        return 1;
    }

    public void setName(int handle, String name) {}

    public void addExeFile(int handle, String file, String name, String platform, String mode) {}

    public void setIntermediateResultHandler(int handle, IntermediateResultHandler handler) {}
}
