package fi.vantiro.user;

/** Hands intermediate results to the native library, which registers the function. */
public final class NativeFunctionCaller implements IntermediateResultHandler {
    /** For the native library, which makes one for each run that has a callback. */
    public NativeFunctionCaller() {}

    /** Takes one result on the native side. */
    public native void func(String text);

    @Override
    public void handle(String result) {
        func(result);
    }
}
