// A run from Go, with cgo. The calls of a goroutine that is not locked to a thread work as well.
package main

// #include <vantiro.h>
// extern void receive(char *line);
import "C"
import "fmt"
import "os"

//export receive
func receive(line *C.char) { fmt.Println("line", C.GoString(line)) } // a panic here ends the program

func text(call func(buffer *C.char, size *C.uint) C.int) string {
	var buffer [4096]C.char
	call(&buffer[0], &[]C.uint{4096}[0])
	return C.GoString(&buffer[0])
}
func check(status C.int) C.int {
	if status < 0 {
		reason := func(buffer *C.char, size *C.uint) C.int { return C.vantiro_describeStatusCode(status, buffer, size) }
		panic(fmt.Sprintf("%s (%d)", text(reason), status))
	}
	return status
}
func main() {
	check(C.vantiro_init())
	run := check(C.vantiro_peach_handle())
	next := func(buffer *C.char, size *C.uint) C.int { return C.vantiro_peach_nextFile(run, buffer, size) }
	check(C.vantiro_peach_setJobs(run, 5))
	check(C.vantiro_peach_setExecutable(run, C.CString("echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square")))
	check(C.vantiro_peach_addOutputFile(run, C.CString("square")))
	check(C.vantiro_peach_setIntermediateResultHandler(run, (*[0]byte)(C.receive)))
	check(C.vantiro_peach_execute(run))
	for path := text(next); path != ""; path = text(next) {
		content, _ := os.ReadFile(path)
		fmt.Print("file ", string(content))
	}
	defer func() { fmt.Println("failed:", recover()); check(C.vantiro_peach_done(run)) }()
	check(C.vantiro_setLogLevel(C.CString("loud")))
}
