// libFuzzer target: the export-file parser (listing, taking over and removing blocks).
#include "exchange/ExportFile.h"

#include <cstdint>
#include <cstdlib>

namespace {

int markers(const QByteArray &data)
{
    int n = 0;
    for (const QByteArray &line : ExportFile::lines(data))
        n += ExportFile::isMarker(line) ? 1 : 0;
    return n;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const ExportFile::Listing listing = ExportFile::listBlocks(bytes);
    for (const ExportFile::Entry &e : listing.entries)
        (void)e.text();
    ExportFile::ReadError error;
    const int count = markers(bytes);
    for (int index : {0, 1, count - 1, count}) {
        const auto values = ExportFile::takeOverBlock(bytes, index, &error);
        if (values && values->size() != ExportFile::FieldCount)
            std::abort();
        // Removing a block never adds one, and removes one whenever the block exists.
        const int left = markers(ExportFile::removeBlock(bytes, index));
        if (left > count || (index >= 0 && index < count && left >= count))
            std::abort();
    }
    return 0;
}
