// A run from Node.js, with koffi (npm). It calls functions on a stack of its own, where no Java can
// run: on_thread.c makes the calls on a thread; `async` leaves the main loop free for the receiver.
const fs = require('fs'), util = require('util');
const koffi = require('koffi');

koffi.load(process.env.VANTIRO_LIBRARY ?? 'libvantiro.so.1', { global: true });
const thread = koffi.load(process.env.ON_THREAD ?? './on_thread.so');
const Receiver = koffi.proto('void Receiver(const char *line)');
const forms = {};
for (const types of ['', 'int', 'str', 'int,int', 'int,str', 'int,Receiver *', 'int,void *,uint *']) {
  const list = types ? types.split(',') : [];
  forms[types] = thread.func('on_thread', 'int', ['str', ...list.map((t) => (t === 'uint *' ? '_Inout_ uint *' : t))]);
}
const raw = (name, types, ...values) => util.promisify(forms[types].async)(`vantiro_${name}`, ...values);
async function text(name, argument) {
  const buffer = Buffer.alloc(4096), size = [4096];
  if (await raw(name, 'int,void *,uint *', argument, buffer, size) !== 0) throw new Error(`${name} failed`);
  return size[0] > 1 ? buffer.toString('utf8', 0, size[0] - 1) : '';
}
async function grid(name, types = '', ...values) {
  const status = await raw(name, types, ...values);
  if (status < 0) throw new Error(`${await text('describeStatusCode', status)} (${status})`);
  return status;
}

(async () => {
  await grid('init');
  const run = await grid('peach_handle');
  await grid('peach_setJobs', 'int,int', run, 5);
  await grid('peach_setExecutable', 'int,str', run, 'echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square');
  await grid('peach_addOutputFile', 'int,str', run, 'square');
  const receiver = koffi.register((line) => console.log('line', line), koffi.pointer(Receiver));
  await grid('peach_setIntermediateResultHandler', 'int,Receiver *', run, receiver);
  await grid('peach_execute', 'int', run);
  koffi.unregister(receiver);
  for (let path; (path = await text('peach_nextFile', run));) process.stdout.write(`file ${fs.readFileSync(path)}`);
  await grid('setLogLevel', 'str', 'loud').catch((error) => console.log('failed:', error.message));
  await grid('peach_done', 'int', run);
  process.exit(0);
})();
