# A run from Ruby, with Fiddle, which comes with it.
require 'fiddle/import'

module Vantiro
  extend Fiddle::Importer
  dlload ENV.fetch('VANTIRO_LIBRARY', 'libvantiro.so.1')
  %w[init(void) unload(char) setLogLevel(char*) describeStatusCode(int,char*,int*) peach_handle(void)
     peach_setJobs(int,int) peach_setExecutable(int,char*) peach_addOutputFile(int,char*)
     peach_execute(int) peach_setIntermediateResultHandler(int,void*) peach_nextFile(int,char*,int*)
     peach_done(int)].each { |signature| extern "int vantiro_#{signature}" }

  def self.text(name, argument)
    buffer = "\0" * 4096
    send("vantiro_#{name}", argument, buffer, [4096].pack('I')).zero? or raise "#{name} failed"
    buffer.unpack1('Z*').force_encoding('UTF-8')
  end

  def self.call(name, *arguments)
    status = send("vantiro_#{name}", *arguments)
    status.negative? ? raise("#{text(:describeStatusCode, status)} (#{status})") : status
  end
end

# Ruby forgets a closure that nothing holds, and an exception must not leave it.
RECEIVER = Fiddle::Closure::BlockCaller.new(Fiddle::TYPE_VOID, [Fiddle::TYPE_VOIDP]) do |line|
  puts "line #{line}"
rescue StandardError => e
  warn e.message
end
Vantiro.call(:init)
run = Vantiro.call(:peach_handle)
Vantiro.call(:peach_setJobs, run, 5)
Vantiro.call(:peach_setExecutable, run, 'echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square')
Vantiro.call(:peach_addOutputFile, run, 'square')
Vantiro.call(:peach_setIntermediateResultHandler, run, RECEIVER)
Vantiro.call(:peach_execute, run)
until (path = Vantiro.text(:peach_nextFile, run)).empty? do puts "file #{File.read(path)}" end
begin Vantiro.call(:setLogLevel, 'loud') rescue puts "failed: #{$!.message}" end
Vantiro.call(:peach_done, run)
Vantiro.call(:unload, 1)
