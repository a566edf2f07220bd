# A run from Tcl, by critcl (Debian: critcl, tcl-dev), which makes commands of C. An error does not
# leave the receiver: it is reported.
package require critcl
critcl::cheaders -I$env(VANTIRO_INCLUDE)
critcl::clibraries $env(VANTIRO_LIBRARY)
critcl::ldflags -Wl,-rpath,[file dirname $env(VANTIRO_LIBRARY)]
critcl::ccode {
  #include <vantiro.h>
  static Tcl_Interp *receiving;
  static void receive(const char *line) {
    Tcl_SetVar(receiving, "line", line, TCL_GLOBAL_ONLY);
    if (Tcl_GlobalEval(receiving, "receive $line") != TCL_OK) Tcl_BackgroundError(receiving);
  }
  static Tcl_Obj *fetched(int (*function)(int, char *, unsigned int *), int argument) {
    char text[4096] = "";
    function(argument, text, &(unsigned int){sizeof text});
    return Tcl_NewStringObj(text, -1);
  }
}
foreach {name takes call} {
  init {} vantiro_init()               new_run {} vantiro_peach_handle()
  set_jobs {int run int count} {vantiro_peach_setJobs(run, count)}
  set_executable {int run pstring line} {vantiro_peach_setExecutable(run, line.s)}
  add_output {int run pstring file} {vantiro_peach_addOutputFile(run, file.s)}
  execute {Tcl_Interp* tcl int run} {(receiving = tcl, vantiro_peach_setIntermediateResultHandler(run, receive), vantiro_peach_execute(run))}
  set_level {pstring level} {vantiro_setLogLevel(level.s)}   done {int run} vantiro_peach_done(run)
} { critcl::cproc $name $takes int "return $call;" }
critcl::cproc next_file {int run} object0 { return fetched(vantiro_peach_nextFile, run); }
critcl::cproc describe {int status} object0 { return fetched(vantiro_describeStatusCode, status); }
proc check {status} { expr {$status < 0 ? [error "[describe $status] ($status)"] : $status} }
proc receive {line} { puts "line $line" }
check [init]
set run [check [new_run]]
check [set_jobs $run 5]
check [set_executable $run {echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square}]
check [add_output $run square]
check [execute $run]
while {[set path [next_file $run]] ne ""} { set file [open $path]; puts "file [read -nonewline $file]"; close $file }
if {[catch {check [set_level loud]} problem]} { puts "failed: $problem" }
check [done $run]
