#include "elf_file.h"

#include <elf.h>

#include "files.h"

namespace doctor {
namespace {

struct Elf32 {
  using Header = Elf32_Ehdr;
  using Segment = Elf32_Phdr;
  using Section = Elf32_Shdr;
  using Symbol = Elf32_Sym;
  using Dynamic = Elf32_Dyn;
};

struct Elf64 {
  using Header = Elf64_Ehdr;
  using Segment = Elf64_Phdr;
  using Section = Elf64_Shdr;
  using Symbol = Elf64_Sym;
  using Dynamic = Elf64_Dyn;
};

const char *const truncated = "is truncated";

// The index-th record of a table, or nothing where the file ends before it.
template <typename Record>
std::optional<Record> entry(const File &file, std::uint64_t table, std::uint64_t index) {
  return file.record<Record>(table + index * sizeof(Record));
}

template <typename Elf>
bool is_position_independent_program(const File &file, const typename Elf::Segment &dynamic) {
  for (std::uint64_t i = 0; i < dynamic.p_filesz / sizeof(typename Elf::Dynamic); ++i) {
    const auto item = entry<typename Elf::Dynamic>(file, dynamic.p_offset, i);
    if (!item || item->d_tag == DT_NULL) return false;
    if (item->d_tag == DT_FLAGS_1) return (item->d_un.d_val & DF_1_PIE) != 0;
  }
  return false;
}

template <typename Elf>
void read_segments(const File &file, const typename Elf::Header &header, ElfFile &result) {
  std::optional<typename Elf::Segment> dynamic;
  for (unsigned i = 0; i < header.e_phnum; ++i) {
    const auto segment = entry<typename Elf::Segment>(file, header.e_phoff, i);
    if (!segment || (segment->p_type == PT_LOAD &&
                     std::uint64_t{segment->p_offset} + segment->p_filesz > file.size())) {
      result.fault = truncated;
      return;
    }
    if (segment->p_type == PT_DYNAMIC) dynamic = segment;
  }
  if (dynamic && is_position_independent_program<Elf>(file, *dynamic)) result.is_program = true;
}

template <typename Elf>
void read_symbols(const File &file, const typename Elf::Header &header,
                  const typename Elf::Section &table, ElfFile &result) {
  const auto names = entry<typename Elf::Section>(file, header.e_shoff, table.sh_link);
  const auto text = names ? file.bytes(names->sh_offset, names->sh_size) : std::nullopt;
  const auto symbols = file.bytes(table.sh_offset, table.sh_size);
  if (!text || !symbols) {
    result.fault = truncated;
    return;
  }
  for (std::size_t at = 0; at + sizeof(typename Elf::Symbol) <= symbols->size();
       at += sizeof(typename Elf::Symbol)) {
    typename Elf::Symbol symbol;
    symbols->copy(reinterpret_cast<char *>(&symbol), sizeof symbol, at);
    if (symbol.st_shndx != SHN_UNDEF && symbol.st_name < text->size()) {
      result.symbols.insert(text->c_str() + symbol.st_name);
    }
  }
  result.symbols_known = true;
}

template <typename Elf>
void read_rest(const File &file, ElfFile &result) {
  const auto header = file.record<typename Elf::Header>(0);
  if (!header) {
    result.fault = truncated;
    return;
  }
  result.machine = header->e_machine;
  result.is_program = header->e_type == ET_EXEC;
  if (header->e_type != ET_EXEC && header->e_type != ET_DYN) result.fault = "is no shared library";
  if (result.fault.empty()) read_segments<Elf>(file, *header, result);
  for (unsigned i = 0; i < header->e_shnum && result.fault.empty() && !result.symbols_known; ++i) {
    const auto section = entry<typename Elf::Section>(file, header->e_shoff, i);
    if (!section) {
      result.fault = truncated;
    } else if (section->sh_type == SHT_DYNSYM) {
      read_symbols<Elf>(file, *header, *section, result);
    }
  }
}

}  // namespace

std::string ElfFile::kind() const {
  const std::string what = std::to_string(bits) + "-bit " + (is_program ? "program" : "library");
  switch (machine) {
    case EM_386:
    case EM_X86_64:
      return what;
    default:
      return what + " of another kind of machine (" + std::to_string(machine) + ")";
  }
}

ElfFile read_elf(const std::string &path) {
  ElfFile result;
  const File file(path);
  const auto identification = file.bytes(0, EI_NIDENT);
  if (file.size() == 0) {
    result.fault = "is empty";
  } else if (!identification || identification->compare(0, SELFMAG, ELFMAG) != 0) {
    result.fault = "is no shared library";
  } else if ((*identification)[EI_CLASS] == ELFCLASS32) {
    result.bits = 32;
    read_rest<Elf32>(file, result);
  } else {
    result.bits = 64;
    read_rest<Elf64>(file, result);
  }
  return result;
}

}  // namespace doctor
