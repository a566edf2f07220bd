# A run from R, with the calls of host_r.c, which `R CMD SHLIB` makes.
dyn.load(Sys.getenv("VANTIRO_LIBRARY", "libvantiro.so.1"), local = FALSE)
dyn.load(Sys.getenv("HOST_R", "host_r.so"))

text <- function(name, argument) .Call("text", paste0("vantiro_", name), argument)
check <- function(status) {
  if (status < 0) stop(sprintf("%s (%d)", text("describeStatusCode", status), status), call. = FALSE)
  invisible(status)
}
grid <- function(name, ...) check(.Call("call", paste0("vantiro_", name), list(...)))

grid("init")
run <- grid("peach_handle")
grid("peach_setJobs", run, 5L)
grid("peach_setExecutable", run, "echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square")
grid("peach_addOutputFile", run, "square")
check(.Call("set_receiver", run, function(line) cat("line", line, "\n")))
grid("peach_execute", run)
while ((path <- text("peach_nextFile", run)) != "") cat("file", readLines(path), "\n")
tryCatch(grid("setLogLevel", "loud"), error = function(e) cat("failed:", conditionMessage(e), "\n"))
grid("peach_done", run)
grid("unload", 1L)
