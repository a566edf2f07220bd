#!/usr/bin/env python3
"""module.py FILE: writes the Fortran module `vantiro`, with all functions that the headers declare.

Only what differs from function to function is made here; what they share is at the end of HEAD.
"""
import pathlib
import sys
import textwrap

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
import functions  # noqa: E402

HEAD = """\
! libvantiro for Fortran 2008. Made from its headers by clients/fortran/module.py: do not edit.
!
! Each function is named as in C, and gives C's result. Strings go in without the blanks at their
! ends; strings that come out are allocated as long as they are. A list is an array of strings.
! A receiver is a subroutine with one argument, character(*), intent(in); there is one for the
! process, and none drops what comes.
module vantiro
  use, intrinsic :: iso_c_binding
  implicit none
  private

  integer, parameter, public :: vantiro_ok = 0
  integer, parameter :: buffer_too_small = -23
  ! A longer text is asked for twice, which for the next file of a run is the one behind it.
  integer(c_int), parameter :: capacity = 16384

  abstract interface
    subroutine vantiro_receiver(text)
      character(*), intent(in) :: text
    end subroutine
  end interface
  public :: vantiro_receiver
  procedure(vantiro_receiver), pointer, save :: present_receiver => null()

{public}
contains

  function c_string(text) result(copy)
    character(*), intent(in) :: text
    character(len_trim(text) + 1) :: copy
    copy = trim(text)//c_null_char
  end function

  subroutine c_strings(list, copies, pointers)
    character(*), intent(in) :: list(:)
    character(len(list) + 1), intent(inout), target :: copies(:)
    type(c_ptr), intent(out) :: pointers(:)
    integer :: i
    do i = 1, size(list)
      copies(i) = trim(list(i))//c_null_char
      pointers(i) = c_loc(copies(i))
    end do
  end subroutine

  ! Takes over what came out; false when the buffer was too small, which is then larger.
  logical function took(status, room, length, answer)
    integer(c_int), intent(in) :: status, length
    character(:), allocatable, intent(inout) :: room, answer
    took = status /= buffer_too_small
    if (took) then
      answer = ''
      if (status == vantiro_ok .and. length > 1) answer = room(:length - 1)
    else
      deallocate (room)
      allocate (character(length) :: room)
    end if
  end function

  subroutine deliver(text) bind(C)
    character(c_char), intent(in) :: text(*)
    character(:), allocatable :: copy
    integer :: length, i
    length = 0
    do while (text(length + 1) /= c_null_char)
      length = length + 1
    end do
    allocate (character(length) :: copy)
    do i = 1, length
      copy(i:i) = text(i)
    end do
    if (associated(present_receiver)) call present_receiver(copy)
  end subroutine
"""

# Of each kind: what Fortran declares, what C is declared to take, and what is passed to it.
KINDS = {
    "integer": ("integer, intent(in) :: {0}", "integer(c_int), value :: {0}", "{0}"),
    "flag": ("logical, intent(in) :: {0}", "integer(c_signed_char), value :: {0}",
             "merge(1_c_signed_char, 0_c_signed_char, {0})"),
    "string": ("character(*), intent(in) :: {0}", "character(c_char), intent(in) :: {0}(*)",
               "c_string({0})"),
    "index": ("integer, intent(inout) :: {0}", "integer(c_int), intent(inout) :: {0}", "{0}"),
    "buffer": ("character(:), allocatable, intent(out) :: answer",
               "character(c_char), intent(inout) :: {0}(*)", "room"),
    "size": ("", "integer(c_int), intent(inout) :: {0}", "answer_length"),
    "receiver": ("procedure(vantiro_receiver), optional :: {0}", "type(c_funptr), value :: {0}",
                 "c_function"),
    "list": ("character(*), intent(in) :: {0}(:)", "", ""),
}


def wrapped(line: str) -> str:
    """The line, in as many as free form needs."""
    indent = line[:len(line) - len(line.lstrip())]
    parts = textwrap.wrap(line.strip(), 96 - len(indent), break_long_words=False)
    return indent + (f"\n{indent}! " if parts[0][0] == "!" else f" &\n{indent}  ").join(parts)


def argument_names(function: functions.Function) -> list:
    """Of the Fortran function: a buffer and its size are the answer."""
    names = {"buffer": ["answer"], "size": []}
    return [name for parameter in function.parameters
            for name in names.get(parameter.kind, [parameter.name])]


def body(function: functions.Function, call: str) -> list:
    kinds = [parameter.kind for parameter in function.parameters]
    if "buffer" in kinds:
        index = next((p.name for p in function.parameters if p.kind == "index"), None)
        return [
            "integer(c_int) :: answer_length",
            "character(:), allocatable :: room",
            *(["integer :: asked", f"asked = {index}"] if index else []),
            "allocate (character(capacity) :: room)",
            "do",
            "  answer_length = len(room)",
            *([f"  {index} = asked"] if index else []),
            f"  status = {call}",
            "  if (took(status, room, answer_length, answer)) exit",
            "end do"]
    if "receiver" in kinds:
        name = function.parameters[-1].name
        return [
            "type(c_funptr) :: c_function",
            "c_function = c_null_funptr",
            f"if (present({name})) c_function = c_funloc(deliver)",
            f"status = {call}",
            "if (status /= vantiro_ok) return",
            "present_receiver => null()",
            f"if (present({name})) present_receiver => {name}"]
    lists = [parameter.name for parameter in function.parameters if parameter.kind == "list"]
    if not lists:
        return [f"status = {call}"]
    lines, begin = [], "1"
    for name in lists:
        lines.append(f"character(len({name}) + 1), target :: copies_of_{name}(size({name}))")
    lines.append(f"type(c_ptr) :: pointers({' + '.join(f'size({name})' for name in lists)})")
    for name in lists:
        lines.append(f"call c_strings({name}, copies_of_{name}, pointers({begin}:))")
        begin = f"size({name}) + 1"
    return lines + [f"status = {call}"]


def text_of(function: functions.Function) -> str:
    lists = [parameter.name for parameter in function.parameters if parameter.kind == "list"]
    plain = [parameter for parameter in function.parameters if parameter.kind != "list"]
    c_names = [p.name for p in plain] + [f"count_of_{name}" for name in lists]
    c_types = [KINDS[p.kind][1].format(p.name) for p in plain]
    passed = [KINDS[p.kind][2].format(p.name) for p in plain]
    passed += [f"size({name}, kind=c_int)" for name in lists]
    if lists:
        c_names.append("strings")
        c_types += [f"integer(c_int), value :: count_of_{name}" for name in lists]
        c_types.append("type(c_ptr), intent(in) :: strings(*)")
        passed.append("pointers")
    name = f"vantiro_{function.name}"
    c_name = name + "3" * bool(lists)
    lines = [
        f"! {function.brief}",
        f"integer function {name}({', '.join(argument_names(function))}) result(status)",
        *(f"  {line}" for p in function.parameters
          for line in [KINDS[p.kind][0].format(p.name)] if line),
        "  interface",
        f"    integer(c_int) function c_call({', '.join(c_names)}) bind(C, name='{c_name}')",
        "      import",
        *(f"      {line}" for line in c_types),
        "    end function",
        "  end interface",
        *(f"  {line}" for line in body(function, f"c_call({', '.join(passed)})")),
        "end function",
    ]
    return "\n" + "".join(wrapped("  " + line) + "\n" for line in lines)


def main() -> None:
    all_functions = functions.read()
    names = {function.name.lower() for function in all_functions}
    if len(names) < len(all_functions):
        sys.exit("module.py: two functions differ in capital letters alone, which Fortran ignores")
    public = "".join(f"  public :: vantiro_{function.name}\n" for function in all_functions)
    text = HEAD.format(public=public) + "".join(map(text_of, all_functions)) + "end module\n"
    pathlib.Path(sys.argv[1]).write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
