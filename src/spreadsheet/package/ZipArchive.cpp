#include "spreadsheet/package/ZipArchive.h"

#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>
#include <zip.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <exception>
#include <memory>
#include <numeric>
#include <system_error>
#include <thread>

namespace ombrix::xlsx {

namespace {

class ZipError {
  public:
    ZipError() { zip_error_init(&m_Error); }
    ZipError(const ZipError&) = delete;
    ZipError& operator=(const ZipError&) = delete;
    ~ZipError() { zip_error_fini(&m_Error); }

    zip_error_t* Get() { return &m_Error; }
    SpreadsheetError ToException() {
        return SpreadsheetError(fmt::format("its archive: {}", zip_error_strerror(&m_Error)));
    }

  private:
    zip_error_t m_Error = {};
};

struct FreeArchive {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};
struct FreeSource {
    void operator()(zip_source_t* source) const noexcept { zip_source_free(source); }
};
struct CloseFile {
    void operator()(zip_file_t* file) const noexcept { zip_fclose(file); }
};
using Archive = std::unique_ptr<zip_t, FreeArchive>;
using Source = std::unique_ptr<zip_source_t, FreeSource>;
using OpenFile = std::unique_ptr<zip_file_t, CloseFile>;

SpreadsheetError Failure(zip_t* archive) {
    return SpreadsheetError(fmt::format("its archive: {}", zip_strerror(archive)));
}

Source MemorySource(std::string_view content) {
    ZipError error;
    Source source(zip_source_buffer_create(content.data(), content.size(), 0, error.Get()));
    if (!source)
        throw error.ToException();
    return source;
}

Archive OpenArchive(const Source& source, int flags) {
    ZipError error;
    Archive archive(zip_open_from_source(source.get(), flags, error.Get()));
    if (!archive)
        throw error.ToException();
    zip_source_keep(source.get()); // the archive took over our share of the source
    return archive;
}

/// Writes an archive out; it is gone afterwards, its bytes are in its source.
void Finish(Archive archive) {
    if (zip_close(archive.get()) != 0)
        throw Failure(archive.get());
    static_cast<void>(archive.release()); // closing has freed it
}

zip_uint64_t AddFile(const Archive& archive, const std::string& name, Source content) {
    const zip_int64_t index =
        zip_file_add(archive.get(), name.c_str(), content.get(), ZIP_FL_ENC_UTF_8);
    if (index < 0)
        throw Failure(archive.get());
    static_cast<void>(content.release()); // belongs to the archive now
    return static_cast<zip_uint64_t>(index);
}

std::string ReadFile(const Archive& archive, zip_uint64_t index, const std::string& name,
                     std::size_t most) {
    const OpenFile file(zip_fopen_index(archive.get(), index, 0));
    if (!file)
        throw Failure(archive.get());
    std::string content;
    std::array<char, 65536> buffer{};
    while (true) {
        const zip_int64_t count = zip_fread(file.get(), buffer.data(), buffer.size());
        if (count < 0)
            throw SpreadsheetError(fmt::format("its part {} is damaged", name));
        if (count == 0)
            return content;
        content.append(buffer.data(), static_cast<std::size_t>(count));
        if (content.size() > most)
            throw SpreadsheetError(fmt::format("its part {} is too large", name));
    }
}

/// An archive of a single file, in memory.
Source CompressAlone(const std::string& name, const std::string& content, int level) {
    Source target = MemorySource({});
    Archive archive = OpenArchive(target, ZIP_TRUNCATE);
    const zip_uint64_t index = AddFile(archive, name, MemorySource(content));
    if (zip_set_file_compression(archive.get(), index, ZIP_CM_DEFLATE,
                                 static_cast<zip_uint32_t>(level)) != 0)
        throw Failure(archive.get());
    Finish(std::move(archive));
    return target;
}

std::vector<std::size_t> HeaviestFirst(const std::vector<ZipFile>& files) {
    std::vector<std::size_t> order(files.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        return files[left].Weight > files[right].Weight;
    });
    return order;
}

/// Runs a task on this thread and, as far as the system gives threads, on one a processor.
void RunSideBySide(const std::function<void()>& task, std::size_t most) {
    const std::size_t workers =
        std::min<std::size_t>(most, std::max(1U, std::thread::hardware_concurrency()));
    std::vector<std::jthread> threads;
    try {
        while (threads.size() + 1 < workers)
            threads.emplace_back(task);
    } catch (const std::system_error&) {
        // No more threads to be had: those that run share the work.
    }
    task();
}

std::vector<Source> CompressAll(const std::vector<ZipFile>& files, int level) {
    std::vector<Source> compressed(files.size());
    std::vector<std::exception_ptr> failures(files.size());
    const std::vector<std::size_t> order = HeaviestFirst(files);
    std::atomic<std::size_t> next = 0;
    RunSideBySide(
        [&] {
            for (std::size_t i = next++; i < order.size(); i = next++) {
                const ZipFile& file = files[order[i]];
                try {
                    compressed[order[i]] = CompressAlone(file.Name, file.Make(), level);
                } catch (...) {
                    failures[order[i]] = std::current_exception();
                }
            }
        },
        files.size());
    for (const std::exception_ptr& failure : failures)
        if (failure)
            std::rethrow_exception(failure);
    return compressed;
}

std::string Bytes(const Source& source) {
    zip_stat_t status;
    zip_stat_init(&status);
    if (zip_source_stat(source.get(), &status) != 0 || zip_source_open(source.get()) != 0)
        throw SpreadsheetError("its archive cannot be read back");
    std::string bytes(status.size, '\0');
    const zip_int64_t count = zip_source_read(source.get(), bytes.data(), bytes.size());
    zip_source_close(source.get());
    if (count != static_cast<zip_int64_t>(bytes.size()))
        throw SpreadsheetError("its archive cannot be read back");
    return bytes;
}

/// Puts single-file archives into one; their compressed bytes are taken as they are.
Source Merge(const std::vector<ZipFile>& files, const std::vector<Source>& compressed) {
    Source target = MemorySource({});
    std::vector<Archive> parts;
    Archive archive = OpenArchive(target, ZIP_TRUNCATE);
    for (std::size_t i = 0; i < files.size(); ++i) {
        parts.push_back(OpenArchive(compressed[i], ZIP_RDONLY));
        Source content(
            zip_source_zip(archive.get(), parts.back().get(), 0, ZIP_FL_COMPRESSED, 0, -1));
        if (!content)
            throw Failure(archive.get());
        AddFile(archive, files[i].Name, std::move(content));
    }
    Finish(std::move(archive));
    return target;
}

} // namespace

std::map<std::string, std::string> ReadZip(std::string_view archiveBytes, const ZipLimits& limits) {
    if (archiveBytes.empty())
        throw SpreadsheetError("it is empty");
    const Source source = MemorySource(archiveBytes);
    const Archive archive = OpenArchive(source, ZIP_RDONLY);
    const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(archive.get(), 0));
    if (count > limits.Files)
        throw SpreadsheetError("its archive holds too many files");
    std::map<std::string, std::string> files;
    std::size_t room = limits.TotalBytes;
    for (zip_uint64_t i = 0; i < count; ++i) {
        const char* entry = zip_get_name(archive.get(), i, ZIP_FL_ENC_GUESS);
        const std::string name = entry != nullptr ? entry : "";
        if (name.empty() || name.back() == '/')
            continue;
        std::string content = ReadFile(archive, i, name, std::min(room, limits.FileBytes));
        room -= content.size();
        if (!files.emplace(name, std::move(content)).second)
            throw SpreadsheetError(fmt::format("its archive holds {} twice", name));
    }
    return files;
}

std::string WriteZip(const std::vector<ZipFile>& files, int compressionLevel) {
    Source merged;
    {
        const std::vector<Source> compressed = CompressAll(files, compressionLevel);
        merged = Merge(files, compressed);
    }
    return Bytes(merged);
}

} // namespace ombrix::xlsx
