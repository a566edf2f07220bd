"""Our Python client beside what a user would do instead, each kind of call in turn.

    alternatives.py PLACE RUNTIME SECONDS    all kinds of call, a line of JSON each
    alternatives.py start WAY PLACE RUNTIME  the seconds of one start, by vantiro or by jpype

PLACE holds the library and vantiro.jar, with classes that do nothing. One Java machine, started by
JPype and joined by the library, serves both.
"""
import json
import statistics
import subprocess
import sys
import time
import xmlrpc.client

SAME_OPTIONS = ["-Xmx128M", "-Dcom.sun.management.jmxremote"]
# JPype's own classes, where Debian keeps them.
JPYPE_CLASSES = "/usr/share/java/org.jpype.jar"


def start_jpype(place, runtime):
    import jpype

    jpype.startJVM(runtime, *SAME_OPTIONS, classpath=[f"{place}/vantiro.jar", JPYPE_CLASSES])
    return jpype.JClass("fi.vantiro.user.ManagementImpl")()


def start(way, place, runtime):
    if way == "vantiro":
        import vantiro

        begin = time.perf_counter()
        grid = vantiro.Library(f"{place}/libvantiro.so.1")
        grid.check(grid.init())
    else:
        import jpype  # noqa: F401, as vantiro is, before the clock runs

        begin = time.perf_counter()
        start_jpype(place, runtime).initFile()
    print(time.perf_counter() - begin)


def time_batch(call, batch):
    begin = time.perf_counter()
    for _ in range(batch):
        call()
    return (time.perf_counter() - begin) / batch


def compare(kind, name, ours, theirs, seconds, batch=200):
    time_batch(ours, batch), time_batch(theirs, batch)
    pairs = []
    end = time.perf_counter() + seconds
    while len(pairs) < 11 or time.perf_counter() < end:
        if len(pairs) % 2:
            pair = time_batch(ours, batch), time_batch(theirs, batch)
        else:
            pair = (time_batch(theirs, batch), time_batch(ours, batch))[::-1]
        pairs.append(pair)
    low, middle, high = statistics.quantiles((a / b for a, b in pairs), n=4)
    print(json.dumps({
        "set": kind, "name": name, "ratio": middle, "low": low, "high": high, "pairs": len(pairs),
        "ours": 1e9 * statistics.median(a for a, _ in pairs),
        "theirs": 1e9 * statistics.median(b for _, b in pairs)}), flush=True)


SERVER = """
import xmlrpc.server
server = xmlrpc.server.SimpleXMLRPCServer(("127.0.0.1", 0), logRequests=False)
server.register_function(lambda value: value, "getLastError")
server.register_function(lambda level: 0, "setLogLevel")
server.register_function(lambda: "x" * 10, "getUserLogin")
server.register_function(lambda project, params: len(params), "setProjectParams")
print(server.server_address[1], flush=True)
server.serve_forever()
"""


def compare_calls(place, runtime, seconds):
    import vantiro

    theirs = start_jpype(place, runtime)
    grid = vantiro.Library(f"{place}/libvantiro.so.1")
    grid.check(grid.init())
    params = ["key=value"] * 10
    server = subprocess.Popen([sys.executable, "-c", SERVER], stdout=subprocess.PIPE, text=True)
    try:
        remote = xmlrpc.client.ServerProxy(f"http://127.0.0.1:{server.stdout.readline().strip()}")
        kinds = {
            "int": (lambda: grid.getLastError(7), lambda: theirs.getLastError(7),
                    lambda: remote.getLastError(7)),
            "string in": (lambda: grid.setLogLevel("INFO"), lambda: theirs.setLogLevel("INFO"),
                          lambda: remote.setLogLevel("INFO")),
            "string out": (lambda: grid.text(grid.getUserLogin),
                           lambda: str(theirs.getUserLogin()), lambda: remote.getUserLogin()),
            "list of 10": (lambda: grid.setProjectParams(1, params),
                           lambda: theirs.setProjectParams(1, params),
                           lambda: remote.setProjectParams(1, params)),
        }
        for name, (ours, by_jpype, by_xmlrpc) in kinds.items():
            compare("jpype", name, ours, by_jpype, seconds)
            compare("jpype", f"{name} (noise)", by_jpype, by_jpype, seconds)
            compare("xmlrpc", name, ours, by_xmlrpc, seconds, batch=20)
    finally:
        server.kill()
        server.wait()
    java = runtime.replace("lib/server/libjvm.so", "bin/java")
    command = [java, "-cp", f"{place}/vantiro.jar", "fi.vantiro.user.ManagementImpl", "INFO"]
    compare("process", "java for a call", lambda: grid.setLogLevel("INFO"),
            lambda: subprocess.run(command, check=True), 0, batch=1)


if sys.argv[1] == "start":
    start(*sys.argv[2:])
else:
    compare_calls(sys.argv[1], sys.argv[2], float(sys.argv[3]))
