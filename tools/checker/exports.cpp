#include "exports.h"

#include "file.h"

#include <cstring>
#include <link.h>
#include <optional>

namespace plccheck {

namespace {

/// A record of the file's at a place; none where the file ends before.
template <typename Record>
std::optional<Record> RecordAt(const std::string& file, std::size_t place)
{
    if (place > file.size() || file.size() - place < sizeof(Record)) {
        return std::nullopt;
    }
    Record record;
    std::memcpy(&record, file.data() + place, sizeof record);
    return record;
}

bool IsOffered(const ElfW(Sym) & symbol)
{
    const auto binding = symbol.st_info >> 4U;
    const auto kind = symbol.st_info & 0xFU;
    const auto visibility = symbol.st_other & 0x3U;
    return symbol.st_shndx != SHN_UNDEF && symbol.st_shndx != SHN_ABS && binding != STB_LOCAL &&
           (kind == STT_FUNC || kind == STT_OBJECT || kind == STT_GNU_IFUNC) &&
           visibility == STV_DEFAULT;
}

} // namespace

base::Result<std::vector<std::string>> ExportsOf(const std::string& path)
{
    const auto file = base::ReadFile(path);
    if (!file) {
        return base::Failure{file.Message()};
    }
    const auto section = [&file](const ElfW(Ehdr) & header, std::size_t index) {
        return RecordAt<ElfW(Shdr)>(*file, header.e_shoff + index * sizeof(ElfW(Shdr)));
    };
    const auto header = RecordAt<ElfW(Ehdr)>(*file, 0);
    std::vector<std::string> names;
    for (std::size_t i = 0; header && i < header->e_shnum; ++i) {
        const auto table = section(*header, i);
        if (!table || table->sh_type != SHT_DYNSYM) {
            continue;
        }
        const auto strings = section(*header, table->sh_link);
        for (std::size_t at = 0; strings && at < table->sh_size; at += sizeof(ElfW(Sym))) {
            const auto symbol = RecordAt<ElfW(Sym)>(*file, table->sh_offset + at);
            const std::size_t name = symbol ? strings->sh_offset + symbol->st_name : file->size();
            if (symbol && IsOffered(*symbol) && name < file->size()) {
                names.emplace_back(file->c_str() + name);
            }
        }
        return names;
    }
    return base::Failure{"\"" + path + "\" has no table of what it exports"};
}

} // namespace plccheck
