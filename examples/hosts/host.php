<?php
// A run from PHP, with its FFI (on the command line; elsewhere ffi.enable has to be set).
$grid = FFI::cdef('
int vantiro_init(void); int vantiro_unload(unsigned char); int vantiro_setLogLevel(const char *);
int vantiro_describeStatusCode(int, char *, unsigned int *);
int vantiro_peach_handle(void); int vantiro_peach_setJobs(int, int);
int vantiro_peach_setExecutable(int, const char *); int vantiro_peach_addOutputFile(int, const char *);
int vantiro_peach_setIntermediateResultHandler(int, void (*)(const char *));
int vantiro_peach_execute(int); int vantiro_peach_nextFile(int, char *, unsigned int *);
int vantiro_peach_done(int);', getenv('VANTIRO_LIBRARY') ?: 'libvantiro.so.1');

function text(callable $call, int $argument): string {
    $buffer = FFI::new('char[4096]');
    $size = FFI::new('unsigned int');
    $size->cdata = 4096;
    if ($call($argument, $buffer, FFI::addr($size)) < 0) throw new RuntimeException('there is no text');
    return $size->cdata > 1 ? FFI::string($buffer) : '';
}
function check(int $status): int {
    global $grid;
    if ($status >= 0) return $status;
    throw new RuntimeException(text($grid->vantiro_describeStatusCode, $status) . " ($status)");
}

check($grid->vantiro_init());
$run = check($grid->vantiro_peach_handle());
check($grid->vantiro_peach_setJobs($run, 5));
check($grid->vantiro_peach_setExecutable($run, 'echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square'));
check($grid->vantiro_peach_addOutputFile($run, 'square'));
// An exception that leaves a receiver ends PHP.
check($grid->vantiro_peach_setIntermediateResultHandler($run, function ($line) {
    try { echo "line $line\n"; } catch (Throwable $e) { error_log($e->getMessage()); }
}));
check($grid->vantiro_peach_execute($run));
while (($path = text($grid->vantiro_peach_nextFile, $run)) !== '') echo 'file ', file_get_contents($path);
try { check($grid->vantiro_setLogLevel('loud')); } catch (RuntimeException $e) { echo "failed: {$e->getMessage()}\n"; }
check($grid->vantiro_peach_done($run));
check($grid->vantiro_unload(1));
