#include "framework/library/GuardedFiles.h"

#include <assimp/IOStream.hpp>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <utility>

namespace Qor::Chart::Library {

namespace {

/// A file may be read many times over, by importers that look whether it is theirs, but not for ever.
class GuardedStream : public Assimp::IOStream {
public:
    explicit GuardedStream(std::unique_ptr<Assimp::IOStream> p_stream)
        : _stream(std::move(p_stream)), _bytesLeft(FewBytes + ManyTimes * _stream->FileSize()) {}

    std::size_t Read(void* p_buffer, std::size_t p_size, std::size_t p_count) override {
        std::size_t const read = _stream->Read(p_buffer, p_size, p_count);
        std::size_t const bytes = read * p_size + BytesPerCall;
        if (bytes > _bytesLeft) {
            throw std::runtime_error("it does not end where it should");
        }
        _bytesLeft -= bytes;
        return read;
    }
    std::size_t Write(void const* p_buffer, std::size_t p_size, std::size_t p_count) override {
        return _stream->Write(p_buffer, p_size, p_count);
    }
    aiReturn Seek(std::size_t p_offset, aiOrigin p_origin) override { return _stream->Seek(p_offset, p_origin); }
    std::size_t Tell() const override { return _stream->Tell(); }
    std::size_t FileSize() const override { return _stream->FileSize(); }
    void Flush() override { _stream->Flush(); }

private:
    static constexpr std::size_t FewBytes = std::size_t{16} << 20;
    static constexpr std::size_t ManyTimes = 64;
    static constexpr std::size_t BytesPerCall = 16;

    std::unique_ptr<Assimp::IOStream> _stream;
    std::size_t _bytesLeft;
};

} // namespace

Assimp::IOStream* GuardedFiles::Open(char const* p_file, char const* p_mode) {
    std::unique_ptr<Assimp::IOStream> stream(DefaultIOSystem::Open(p_file, p_mode));
    return stream ? new GuardedStream(std::move(stream)) : nullptr; // owned by the importer
}

} // namespace Qor::Chart::Library
