#!/usr/bin/perl
# A run from Perl, with FFI::Platypus (Debian: libffi-platypus-perl).
use v5.36;
use FFI::Platypus 2.00;

my $ffi = FFI::Platypus->new(api => 2, lib => $ENV{VANTIRO_LIBRARY} // 'libvantiro.so.1');
$ffi->type('(string)->void' => 'receiver');
my %takes = (
    init => [], peach_handle => [], setLogLevel => ['string'], unload => ['uint8'],
    describeStatusCode => ['int', 'string', 'uint*'], peach_nextFile => ['int', 'string', 'uint*'],
    peach_setIntermediateResultHandler => ['int', 'receiver'], peach_setJobs => ['int', 'int'],
    map({ ($_ => ['int', 'string']) } qw(peach_setExecutable peach_addOutputFile)),
    map({ ($_ => ['int']) } qw(peach_execute peach_done)),
);
my %call = map { $_ => $ffi->function("vantiro_$_" => $takes{$_} => 'int') } keys %takes;

sub text ($name, $argument) {
    my ($buffer, $size) = ("\0" x 4096, 4096);
    $call{$name}->($argument, $buffer, \$size) == 0 or die "$name failed\n";
    return unpack('Z*', $buffer);
}

sub check ($name, @arguments) {
    my $status = $call{$name}->(@arguments);
    return $status >= 0 ? $status : die 'failed: ', text('describeStatusCode', $status), " ($status)\n";
}

check('init');
my $run = check('peach_handle');
check('peach_setJobs', $run, 5);
check('peach_setExecutable', $run, 'echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square');
check('peach_addOutputFile', $run, 'square');
# Perl forgets a closure that nothing holds. What it dies of is printed.
my $receiver = $ffi->closure(sub ($line) { say "line $line" });
check('peach_setIntermediateResultHandler', $run, $receiver);
check('peach_execute', $run);
while (my $path = text('peach_nextFile', $run)) { open my $file, '<', $path or die; print 'file ', <$file>; }
eval { check('setLogLevel', 'loud'); 1 } or print $@;
check('peach_done', $run);
check('unload', 1);
