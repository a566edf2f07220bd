"""What vantiro-doctor says of each set-up in which a start fails, and that the library agrees.

set_ups.py DOCTOR PROGRAM LIBRARY ARCHIVE JVM JAVAC GROUP

PROGRAM starts the library that it is given, in the same set-up as the doctor.
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import zipfile

DOCTOR, PROGRAM, LIBRARY, ARCHIVE, JVM, JAVAC, GROUP = sys.argv[1:]
HERE = 32 if pathlib.Path(LIBRARY).read_bytes()[4] == 1 else 64
OTHER = 96 - HERE
CLASS = "fi/vantiro/user/ManagementImpl"


def conf(text, encoding="utf-8"):
    return lambda folder: (folder / "lib/VantiroDLL.conf").write_bytes(
        text.replace("JVM", JVM).replace(JVM + "PATH", "JVMPATH").encode(encoding))


def other_word_size(*names):
    """Files that begin like a shared library, which is all that counts."""
    def set_up(folder):
        for path in [folder / name for name in names]:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.unlink(missing_ok=True)
            path.write_bytes(b"\x7fELF" + bytes([OTHER // 32]) + bytes(99))
    return set_up


def archive(management_class, extension=".class"):
    def set_up(folder):
        with zipfile.ZipFile(folder / "lib/vantiro.jar", "w") as out:
            out.writestr(CLASS + extension, management_class)
    return set_up


def java(body):
    """An archive whose management class has that body."""
    def set_up(folder):
        source = folder / "ManagementImpl.java"
        source.write_text("package fi.vantiro.user; public class ManagementImpl {" + body + "}")
        subprocess.run([JAVAC, "-nowarn", "--release", "8", "-d", folder, source], check=True,
                       stderr=subprocess.DEVNULL)
        archive((folder / CLASS).with_suffix(".class").read_bytes())(folder)
    return set_up


def with_class_changed(change):
    with zipfile.ZipFile(ARCHIVE) as original:
        return archive(change(original.read(CLASS + ".class")))


def then(*set_ups):
    return lambda folder: [set_up(folder) for set_up in set_ups]


# Shell words that the set-ups below share.
SHELL = """
set -e
named() { echo "JVMPATH=$1" >lib/VantiroDLL.conf; }
copy_of_runtime() {
  mkdir -p "$1"; { cp -al "$RUNTIME" "$1/rt" || cp -a "$RUNTIME" "$1/rt"; } 2>/dev/null
  named "$PWD/$1/rt/lib/server/libjvm.so"
}
own() { cp "$1" own; mv own "$1"; }  # no longer a link to the original
as_user() { if [ $(id -u) = 0 ]; then as_stranger "$@"; else "$@"; fi; }
as_stranger() { setpriv --reuid=61234 --regid=61234 --clear-groups "$@"; }
in_noexec() {
  unshare -m sh -c 'mount --bind lib lib; mount -o remount,bind,noexec lib; "$@"' sh "$@"
}
"""
OPTION = "an option in JAVA_TOOL_OPTIONS or _JAVA_OPTIONS keeps Java from starting: "
NO_CONF = lambda folder: (folder / "lib/VantiroDLL.conf").unlink()
OTHER_KIND = f"is a {OTHER}-bit library, and a program with this library needs a {HERE}-bit one"
NOT_HERE = "leads to no runtime library; .*libjvm.so would do, but lies where the library does not"
BY_PATH = "JVMPATH=/.*/libjvm.so"

# name, set-up (for the shell or of a folder), before the command, the sentence; None: it starts.
ROWS = {
    "runtime": [
        ("all is well", "", "", None),
        ("other word size", then(other_word_size("libjvm.so"), lambda f: conf(f"JVMPATH={f}/libjvm.so")(f)),
         "", f"libjvm.so, which VantiroDLL.conf leads to, {OTHER_KIND}; install a {HERE}-bit"),
        ("missing", "named $PWD/no/libjvm.so", "", "leads to, does not exist: there is no .*/no;"),
        ("unreadable", "copy_of_runtime .; own rt/lib/server/libjvm.so; chmod 0 rt/lib/server/*.so",
         "as_user ", "leads to, cannot be read by user"),
        ("in a closed folder", "named $PWD/rt/libjvm.so; mkdir -m 0 rt", "as_user ",
         "the directory .*/rt is closed to it"),
        ("a text", "echo >text; named $PWD/text", "", "leads to, does not load: .*text: file too short"),
        ("truncated", "head -c 3000000 $JVM >libjvm.so; named $PWD/libjvm.so", "",
         "is cut short, .*libjvm.so; install the runtime again"),
        ("classes truncated", "copy_of_runtime .; rm rt/lib/modules; head -c 99000000 $RUNTIME/lib/modules >rt/lib/modules", "",
         "a file of the Java runtime is cut short, .*: .*/rt/lib/modules; install the runtime again"),
        ("classes a named pipe", "copy_of_runtime .; rm rt/lib/modules; mkfifo rt/lib/modules",
         "PATIENCE=3; ", "lib/modules, which is a named pipe"),
        ("a named pipe", "mkfifo libjvm.so; named $PWD/libjvm.so", "PATIENCE=3; ", "is a named pipe"),
        ("libjli", "named $RUNTIME/lib/libjli.so", "", "another library: .*; write the line " + BY_PATH),
        ("bin/java", "named $RUNTIME/bin/java", "", "cannot dynamically load .*; write the line " + BY_PATH),
        ("a directory", "named $RUNTIME", "", "is a directory; write the line " + BY_PATH),
        ("copied away", "cp $JVM .; named $PWD/libjvm.so", "", "was copied away from its runtime: .*/libjvm.so has no lib/modules .*; name"),
        ("incomplete", "copy_of_runtime .; rm rt/lib/libnio.so", "", "is not complete: .*nio"),
        ("without zlib", "copy_of_runtime .; rm -f rt/lib/libz.so.1; : >rt/lib/libz.so.1", "",
         "cannot open archives for want of a libz.so.1.*rt/lib/libz.so.1: .*; install it"),
        ("a colon in its path", "copy_of_runtime k:n", "", "there is a : in a path, .*k:n.*; use dir"),
    ],
    "conf": [
        ("unreadable", "chmod 0 lib/*.conf", "as_user ", "VantiroDLL.conf cannot be read by user"),
        ("a directory", "rm lib/*.conf; mkdir lib/VantiroDLL.conf", "", "conf is a directory; make"),
        ("a named pipe", "rm lib/*.conf; mkfifo lib/VantiroDLL.conf", "", "conf is a named pipe"),
        ("case of its name", "mv lib/VantiroDLL.conf lib/VantiroDll.conf", "",
         "VantiroDll.conf is not read, since its name differs .*; rename it"),
        ("blanks around the key", conf("JVMPATH = JVM\n"), "",
         "line 1 .* has blanks around JVMPATH; write " + BY_PATH),
        ("blank before the value", conf("#\nJVMPATH= JVM\n"), "", "line 2 .* has blanks around the"),
        ("blank behind the value", conf("JVMPATH=JVM \n"), "", "has blanks around the path"),
        ("quotes", conf('JVMPATH="JVM"\n'), "", "has quotes .*; write " + BY_PATH),
        ("comment behind", conf("JVMPATH=JVM # Java\n"), "", "has a comment .*; write " + BY_PATH),
        ("tilde", conf("JVMPATH=~/libjvm.so\n"), "", "has a '~', .*; write JVMPATH=/"),
        ("variable", conf("JVMPATH=$HOME/libjvm.so\n"), "", "has a variable, .*; write JVMPATH=/"),
        ("byte-order mark", conf("JVMPATH=JVM\n", "utf-8-sig"), "", "begins with a byte-order mark"),
        ("UTF-16", conf("JVMPATH=JVM\n", "utf-16"), "", "is UTF-16"),
        ("carriage returns", conf("# Java\rJVMPATH=JVM\r"), "", "end in a lone carriage return"),
        ("equals sign in the path", conf("JVMPATH=/java=17/libjvm.so\n"), "",
         "has a second '=', and the path ends there; name the runtime by way of a link"),
        ("small letters", conf("jvmpath=JVM\n"), "", "does not have JVMPATH in capital letters"),
        ("no equals sign", conf("JVMPATH JVM\n"), "", "has no '='"),
        ("shell's export", conf("export JVMPATH=JVM\n"), "", "has more than JVMPATH in front"),
        ("harmless lines", conf("# x\r\n\r\nJVMPATH=JVM\r\nJVMPATH=/no\r\n"), "", None),
    ],
    "search": [
        ("JAVA_HOME of Java 9", NO_CONF, 'JAVA_HOME="$RUNTIME" ',
         None if HERE == 64 else "JAVA_HOME .* " + NOT_HERE),
        ("PATH to Java 9", NO_CONF, 'JAVA_PATH="$RUNTIME/bin"; ',
         None if HERE == 64 else "PATH leads to, .*, " + NOT_HERE),
        ("JAVA_HOME of another kind", then(NO_CONF, other_word_size("jre/lib/x/server/libjvm.so")),
         "JAVA_HOME=$PWD ", "JAVA_HOME .* leads to no runtime library; .*" + OTHER_KIND),
        ("JAVA_HOME to another kind", then(NO_CONF, other_word_size(
            "lib/i386/server/libjvm.so", "lib/server/libjvm.so")), "JAVA_HOME=$PWD ",
         "which JAVA_HOME leads to, " + OTHER_KIND),
        ("JAVA_HOME is a launcher", NO_CONF, 'JAVA_HOME="$RUNTIME/bin/java" ', "is no directory and leads to no"),
        ("JAVA_HOME leads nowhere", NO_CONF, "JAVA_HOME=/no/java ", "JAVA_HOME .*/no/java. is no directory and leads to no"),
        ("nothing is set", NO_CONF, "", "no Java runtime was found: .* says: libjvm.so: cannot"),
        ("wrapper script", "rm lib/*.conf; echo '#!/bin/sh' >java", "JAVA_PATH=$PWD; ", "java, is a script"),
        ("circle of links", "rm lib/*.conf; ln -s java java", "JAVA_PATH=$PWD; ", "leads in a circle"),
        ("relative link", "rm lib/*.conf; mkdir a b; ln -s ../b/java a/java; cp $RUNTIME/bin/java b",
         "JAVA_PATH=$PWD/a; ", "a link to ../b/java, which the library takes relative"),
        ("unreadable launcher", "rm lib/*.conf; cp $RUNTIME/bin/java .; chmod 111 java",
         "JAVA_PATH=$PWD; as_user ", "java, cannot be read by user"),
        ("reached by a link", "mkdir a; ln -s $LIB a", "LIB=$PWD/a/${LIB##*/}; ",
         "is a link to .*, and the library looks for VantiroDLL.conf and vantiro.jar beside the link"),
        ("reached by a relative path", "", "LIB=lib/${LIB##*/}; ", None),
        ("library is missing", "rm $LIB", "", "does not exist; name the library"),
        ("library is truncated", "head -c 9000 $LIB >x; mv x $LIB", "", "cut short, .*; install the lib"),
        ("library of another kind", lambda f: other_word_size("lib/" + pathlib.Path(LIBRARY).name)(f),
         "", f"is a {OTHER}-bit library, and this doctor is a {HERE}-bit program"),
        ("library is a named pipe", "rm $LIB; mkfifo $LIB", "PATIENCE=3; ", "is a named pipe; name the library"),
        ("another library", "cp $RUNTIME/lib/libjli.so x; mv x $LIB", "", "does not load: .*; install the library again"),
    ],
    "archives": [
        ("missing", "rm lib/vantiro.jar", "", "vantiro.jar does not exist; put the"),
        ("unreadable", "own lib/vantiro.jar; chmod 0 lib/vantiro.jar", "as_user ",
         "vantiro.jar cannot be read by user"),
        ("truncated", "head -c 9000 $ARCHIVE >x; mv x lib/vantiro.jar", "", "is damaged, .*: java.util.zip.ZipException"),
        ("a directory", "rm lib/vantiro.jar; mkdir lib/vantiro.jar", "", "vantiro.jar is a directory"),
        ("a named pipe", "rm lib/vantiro.jar; mkfifo lib/vantiro.jar", "PATIENCE=3; ",
         "vantiro.jar is a named pipe"),
        ("other archive damaged", "echo >lib/xmlrpc-2.0.jar", "", None),
        ("without the class", archive(b"", ".txt"), "", "no usable management class, .*: java.lang.NoClassDefFoundError"),
        ("damaged class", with_class_changed(lambda c: c[:99]), "", "java.lang.ClassFormatError"),
        ("for a newer Java", with_class_changed(lambda c: c[:6] + b"\1\0" + c[8:]), "",
         "built for a newer Java .*class file version 256"),
        ("without the constructor", java("public ManagementImpl(int i) {}"), "",
         "has no constructor without parameters"),
        ("without the initialiser", java(""), "", "does not have the initialiser"),
        ("constructor throws", java("public ManagementImpl() { throw new Error(\"no use\"); }"), "",
         "constructor of the management class threw an exception: java.lang.Error: no use"),
        ("static initialiser throws", java("static int i = Integer.parseInt(\"y\");"), "",
         "a static initialiser that throws: .*NumberFormatException"),
        ("initialiser throws", java("public int initFile() { throw new Error(\"no use\"); }"), "",
         "the Java side threw an exception.*no use"),
        ("initialiser exits", java("public int initFile() { System.exit(7); return 0; }"), "",
         "ended with status 7 while calling the initialiser"),
        ("initialiser hangs", java("public int initFile() { for (;;); }"), "PATIENCE=3; ",
         "did not come to an end within 3 seconds while calling the initialiser"),
        ("initialiser fails", java("public int initFile() { return -3; }"
                                   "public String describeStatusCode(int i) { return \"no \" + i; }"),
         "", "own initialiser failed: .*: -3, no -3"),
        ("needs another archive", java("static Object o = new Other(); static class Other {}"), "",
         "needs a class that is in none of the three archives: .*ManagementImpl.Other"),
    ],
    "surroundings": [
        ("a colon in the directory", "", "cp -a lib k:n; LIB=$PWD/k:n/${LIB##*/}; ", "there is a : in a path, .*/k:n/.*; use dir"),
        ("beyond the locale", "cp -a lib d\u00eb", "LIB=$PWD/d\u00eb/${LIB##*/}; LC_ALL=C ",
         "has characters that the encoding of the locale .*d\u00eb/"),
        ("current directory", "mkdir d\u00eb; cp *.properties d\u00eb", "cd d\u00eb; LC_ALL=C ",
         "has characters that the encoding of the locale .*d\u00eb, in"),
        ("no current directory", "mkdir a", "cd a; rmdir ../a; ", "directory has been removed; start"),
        ("memory", "", "ulimit -v 400000; ", "may not have the memory .*ulimit -v 400000"),
        ("threads", "", "ulimit -u 6; as_stranger ", "may not start the threads .*-u 6"),
        ("open files", "", "ulimit -n 8; ", "may not open enough files: .*-n 8"),
        ("unknown option", "", "JAVA_TOOL_OPTIONS=-Xno ", OPTION + "JAVA_TOOL_OPTIONS=-Xno; Java says: Unrec"),
        ("class path", "", "_JAVA_OPTIONS=-Djava.class.path=/x ", OPTION + "_JAVA_OPTIONS=-Djava.class"),
        ("temporary directory", "", "JAVA_TOOL_OPTIONS=-Djava.io.tmpdir=/no ", OPTION + ".*tmpdir=/no"),
        ("heap too large", "", "_JAVA_OPTIONS=-Xmx9999999g ", OPTION + ".*-Xmx9999999g"),
        ("waiting for a debugger", "", "PATIENCE=5; JAVA_TOOL_OPTIONS=-agentlib:jdwp=transport="
         "dt_socket,server=y,suspend=y,address=127.0.0.1:0 ", OPTION + ".*suspend=y"),
        ("options that do no harm", "", "JAVA_TOOL_OPTIONS=-Dx=y JDK_JAVA_OPTIONS=-Xno ", None),
        ("noexec", "", "in_noexec ", "is mounted noexec"),
        ("no entry in passwd", "", "as_stranger ", None),
    ],
}


def run(folder, before, command):
    environment = dict(os.environ, LC_ALL="C.UTF-8", JVM=JVM, RUNTIME=str(pathlib.Path(JVM).parents[2]),
                       ARCHIVE=ARCHIVE, DOCTOR=DOCTOR, PROGRAM=PROGRAM,
                       LIB=str(folder / "lib" / pathlib.Path(LIBRARY).name))
    for name in ("JAVA_HOME", "JAVA_TOOL_OPTIONS", "_JAVA_OPTIONS"):
        environment.pop(name, None)
    done = subprocess.run(["bash", "-c", SHELL + before + command], cwd=folder, env=environment,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
    return done.returncode, done.stdout.decode("utf-8", "replace")


def wrong(folder, set_up, before, sentence):
    """What went wrong, or None."""
    (folder / "lib").mkdir()
    for name in (LIBRARY, ARCHIVE):
        shutil.copy(name, folder / "lib")
    conf("JVMPATH=JVM\n")(folder)
    (folder / "vantiro.properties").write_text("grid.home=/tmp\n")
    folder.chmod(0o777)
    if callable(set_up):
        set_up(folder)
    else:
        status, text = run(folder, set_up, "")
        if status:
            return f"the set-up failed: {text}"

    there = 'timeout -s KILL %s env PATH="${JAVA_PATH-/no}" '
    status, text = run(folder, before, there % 60 + '"$DOCTOR" --json --timeout ${PATIENCE-60} "$LIB"')
    if not text.startswith("{"):
        return f"no findings, status {status}: {text}"
    found = [entry["cause"] + "; " + entry["cure"] for entry in json.loads(text).get("troubles", [])]
    print(*found, sep="\n")
    if sentence and not any(re.search(sentence, line) for line in found):
        return f"no such sentence: {sentence}\n{text}"
    if len({sentence is None, status == 0, not found}) != 1:
        return f"status {status}:\n{text}"
    status_of_program, text_of_program = run(
        folder, before, there % "${PATIENCE-60}" + '"$PROGRAM" "$LIB"')
    if (status == 0) != (status_of_program == 0):
        return f"the library disagrees:\n{text_of_program}\n{text}"
    text = run(folder, before, there % 60 + '"$DOCTOR" "$LIB"')[1] if sentence is None else ""
    if text.count("\n") > 10 or "commons" in text:
        return f"too many words for a set-up that is in order:\n{text}"
    return None


failures = 0
for name, set_up, before, sentence in ROWS[GROUP]:
    # Folders of the build tree, so that the runtime need not be copied.
    with tempfile.TemporaryDirectory(dir=os.getcwd()) as scratch:
        folder = pathlib.Path(scratch)
        print(f"--- {name}", flush=True)
        (folder / "lib").mkdir()
        if run(folder, before if "as_" in before or "in_noexec" in before else "",
               'test -r "$JVM"')[0]:
            print("skipped: it takes the rights of root, and a build tree that others may read")
            continue
        (folder / "lib").rmdir()
        problem = wrong(folder, set_up, before, sentence)
        run(folder, "", "chmod -R u+rwX .")
        if problem:
            failures += 1
            print("FAILED:", problem)
sys.exit(failures != 0)
