-- A run from LuaJIT, with its ffi.
local ffi = require 'ffi'
ffi.cdef [[
int vantiro_init(void); int vantiro_unload(unsigned char); int vantiro_setLogLevel(const char *);
int vantiro_describeStatusCode(int, char *, unsigned int *);
int vantiro_peach_handle(void); int vantiro_peach_done(int); int vantiro_peach_setJobs(int, int);
int vantiro_peach_setExecutable(int, const char *); int vantiro_peach_addOutputFile(int, const char *);
int vantiro_peach_setIntermediateResultHandler(int, void (*)(const char *));
int vantiro_peach_execute(int); int vantiro_peach_nextFile(int, char *, unsigned int *);
]]
local grid = ffi.load(os.getenv 'VANTIRO_LIBRARY' or 'libvantiro.so.1')
local function text(call, argument)
  local buffer = ffi.new('char[4096]')
  assert(call(argument, buffer, ffi.new('unsigned int[1]', 4096)) == 0)
  return ffi.string(buffer)
end
local function check(status)
  if status < 0 then error(('%s (%d)'):format(text(grid.vantiro_describeStatusCode, status), status), 0) end
  return status
end

check(grid.vantiro_init())
local run = check(grid.vantiro_peach_handle())
check(grid.vantiro_peach_setJobs(run, 5))
check(grid.vantiro_peach_setExecutable(run, 'echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square'))
check(grid.vantiro_peach_addOutputFile(run, 'square'))
-- An error must not leave the callback, which lives until it is freed.
local receiver = ffi.cast('void (*)(const char *)', function(line)
  xpcall(function() print('line ' .. ffi.string(line)) end, print)
end)
check(grid.vantiro_peach_setIntermediateResultHandler(run, receiver))
-- What compiled code calls must not call back.
jit.off(true, true)
check(grid.vantiro_peach_execute(run))
local function next_file() local path = text(grid.vantiro_peach_nextFile, run) return path ~= '' and path or nil end
for path in next_file do io.write('file ', io.open(path):read '*a') end
print('failed: ' .. select(2, pcall(check, grid.vantiro_setLogLevel 'loud')))
check(grid.vantiro_peach_done(run))
receiver:free()
check(grid.vantiro_unload(1))
