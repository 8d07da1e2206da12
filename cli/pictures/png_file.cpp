#include "pictures/png_file.h"

#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <string>

#include "report.h"

// libpng reports an error by jumping back to the setjmp. Everything with a destructor therefore
// lives in the caller of the function that holds the setjmp, so that no jump skips one.

namespace tessaro::cli {

namespace {

constexpr png_uint_32 kLargestSide = 4096;

struct Session {
    std::string message;
    const ByteArray* input = nullptr;
    std::size_t at = 0;
    ByteArray* output = nullptr;
    std::vector<png_bytep> rows;
};

void OnError(png_structp png, png_const_charp message) {
    auto* session = static_cast<Session*>(png_get_error_ptr(png));
    session->message = message;
    std::longjmp(png_jmpbuf(png), 1);
}

void OnWarning(png_structp, png_const_charp) {}

void OnRead(png_structp png, png_bytep target, std::size_t count) {
    auto* session = static_cast<Session*>(png_get_io_ptr(png));
    if (count > session->input->size() - session->at)
        png_error(png, "the file ends early");
    std::memcpy(target, session->input->data() + session->at, count);
    session->at += count;
}

void OnWrite(png_structp png, png_bytep source, std::size_t count) {
    auto* session = static_cast<Session*>(png_get_io_ptr(png));
    session->output->insert(session->output->end(), source, source + count);
}

void OnFlush(png_structp) {}

/// What the file holds, brought to one byte per palette index, or to four bytes of red, green, blue
/// and alpha.
struct Raw {
    bool indexed = false;
    int width = 0, height = 0;
    ByteArray bytes;
    std::vector<Rgb> palette;
    std::vector<std::uint8_t> alpha;  ///< of the first palette entries
};

bool Decode(png_structp png, png_infop info, Session& session, Raw& raw) {
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_read_fn(png, &session, OnRead);
    png_set_user_limits(png, kLargestSide, kLargestSide);
    png_read_info(png, info);
    raw.width = static_cast<int>(png_get_image_width(png, info));
    raw.height = static_cast<int>(png_get_image_height(png, info));
    raw.indexed = png_get_color_type(png, info) == PNG_COLOR_TYPE_PALETTE;
    if (raw.indexed) {
        png_colorp entries = nullptr;
        int count = 0;
        png_get_PLTE(png, info, &entries, &count);
        for (int i = 0; i < count; ++i)
            raw.palette.push_back({entries[i].red, entries[i].green, entries[i].blue});
        png_bytep alpha = nullptr;
        int alphaCount = 0;
        if (png_get_tRNS(png, info, &alpha, &alphaCount, nullptr) && alpha)
            raw.alpha.assign(alpha, alpha + alphaCount);
        png_set_packing(png);
    } else {
        png_set_strip_16(png);
        png_set_expand(png);
        png_set_gray_to_rgb(png);
        png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    }
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    const std::size_t stride = png_get_rowbytes(png, info);
    raw.bytes.resize(stride * static_cast<std::size_t>(raw.height));
    for (int y = 0; y < raw.height; ++y)
        session.rows.push_back(raw.bytes.data() + stride * static_cast<std::size_t>(y));
    png_read_image(png, session.rows.data());
    return true;
}

bool Encode(png_structp png, png_infop info, Session& session, const PngPixels& pixels) {
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_write_fn(png, &session, OnWrite, OnFlush);
    const int type = pixels.channels == 1   ? PNG_COLOR_TYPE_PALETTE
                     : pixels.channels == 3 ? PNG_COLOR_TYPE_RGB
                                            : PNG_COLOR_TYPE_RGBA;
    png_set_IHDR(png, info, static_cast<png_uint_32>(pixels.width),
                 static_cast<png_uint_32>(pixels.height), 8, type, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    // What is drawn or taken from a game is flat, and tiles repeat: the fastest level finds nearly
    // all of it, and filters would hide it.
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_compression_level(png, 1);
    if (pixels.channels == 1) {
        png_color entries[256];
        for (int i = 0; i < pixels.colorCount; ++i) {
            const Rgb& color = (*pixels.colors)[static_cast<std::size_t>(i)];
            entries[i] = {color.red, color.green, color.blue};
        }
        png_set_PLTE(png, info, entries, pixels.colorCount);
        if (pixels.hole) {
            png_byte alpha[256];
            std::memset(alpha, 0xFF, sizeof alpha);
            alpha[*pixels.hole] = 0;
            png_set_tRNS(png, info, alpha, *pixels.hole + 1, nullptr);
        }
    }
    png_write_info(png, info);
    png_write_image(png, session.rows.data());
    png_write_end(png, nullptr);
    return true;
}

}  // namespace

SourceImage ReadPng(const ByteArray& file) {
    Session session;
    session.input = &file;
    Raw raw;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &session, OnError, OnWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const bool decoded = info && Decode(png, info, session, raw);
    png_destroy_read_struct(&png, &info, nullptr);
    if (!decoded)
        throw CommandError("damaged PNG file: " + session.message);

    SourceImage image;
    image.width = raw.width;
    image.height = raw.height;
    image.indexed = raw.indexed;
    const std::size_t count =
        static_cast<std::size_t>(raw.width) * static_cast<std::size_t>(raw.height);
    image.opaque.resize(count, 1);
    image.pixels.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (raw.indexed) {
            const std::size_t index = raw.bytes[i];
            image.pixels[i] = index < raw.palette.size() ? raw.palette[index] : Rgb{};
            image.opaque[i] = index >= raw.alpha.size() || raw.alpha[index] >= 128;
        } else {
            const std::uint8_t* pixel = raw.bytes.data() + 4 * i;
            image.pixels[i] = {pixel[0], pixel[1], pixel[2]};
            image.opaque[i] = pixel[3] >= 128;
        }
    }
    if (raw.indexed) {
        image.indices = std::move(raw.bytes);
        image.palette = std::move(raw.palette);
    }
    return image;
}

ByteArray WritePng(const PngPixels& pixels) {
    ByteArray file;
    Session session;
    session.output = &file;
    const std::size_t stride =
        static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.channels);
    for (int y = 0; y < pixels.height; ++y)
        session.rows.push_back(const_cast<png_bytep>(pixels.bytes.data()) +
                               stride * static_cast<std::size_t>(y));
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &session, OnError, OnWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const bool encoded = info && Encode(png, info, session, pixels);
    png_destroy_write_struct(&png, &info);
    if (!encoded)
        throw CommandError("cannot write a PNG file: " + session.message);
    return file;
}

}  // namespace tessaro::cli
