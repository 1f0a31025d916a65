#include <objbase.h>
#include <wincodec.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <vector>

#include "kit/pictures/png_file.h"

namespace korvel::kit {
namespace {

/// Initialises COM for the thread, unless a host has done so in another way.
struct ComOfThread {
    const HRESULT result = CoInitializeEx(nullptr, COINIT_MULTITHREADED);

    ComOfThread() = default;
    ~ComOfThread();
    ComOfThread(const ComOfThread&) = delete;
    ComOfThread& operator=(const ComOfThread&) = delete;
};

struct Release {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using Com = std::unique_ptr<Interface, Release>;

class PngEncoder {
public:
    PngEncoder(const OutputFile& out, PictureSize size);
    void add_row(const unsigned char* pixels);
    void write();

private:
    template <class Interface, class Make>
    Com<Interface> made(const Make& make);
    void check(HRESULT result) const;

    const OutputFile& out_;
    ComOfThread com_;
    Com<IWICImagingFactory> factory_;
    Com<IStream> stream_;
    Com<IWICBitmapEncoder> encoder_;
    Com<IWICBitmapFrameEncode> frame_;
    std::vector<unsigned char> row_; // three bytes to a pixel
};

} // namespace

struct PngPage::Surface {
    PictureSize size;
    std::vector<unsigned char> bytes;
};

PngPage::PngPage(OutputFile& out, PictureSize size) : out_(out) {
    try {
        surface_ = std::make_unique<Surface>(
            Surface{size, std::vector<unsigned char>(4 * std::size_t(size.width) * size.height)});
    } catch (const std::exception&) {
        out.fail("out of memory");
    }
}

PngPage::~PngPage() = default;

int PngPage::stride() const {
    return 4 * surface_->size.width;
}

unsigned char* PngPage::pixels() {
    return surface_->bytes.data();
}

void PngPage::write() {
    PngEncoder encoder(out_, surface_->size);
    for (int y = 0; y < surface_->size.height; ++y) {
        encoder.add_row(row(y));
    }
    encoder.write();
}

namespace {

PngEncoder::PngEncoder(const OutputFile& out, PictureSize size)
    : out_(out), row_(3 * std::size_t(size.width)) {
    factory_ = made<IWICImagingFactory>([](auto** factory) {
        return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_IWICImagingFactory, reinterpret_cast<void**>(factory));
    });
    stream_ =
        made<IStream>([](auto** stream) { return CreateStreamOnHGlobal(nullptr, TRUE, stream); });
    encoder_ = made<IWICBitmapEncoder>([&](auto** encoder) {
        return factory_->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder);
    });
    check(encoder_->Initialize(stream_.get(), WICBitmapEncoderNoCache));
    frame_ = made<IWICBitmapFrameEncode>(
        [&](auto** frame) { return encoder_->CreateNewFrame(frame, nullptr); });
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    check(frame_->Initialize(nullptr));
    check(frame_->SetSize(UINT(size.width), UINT(size.height)));
    check(frame_->SetPixelFormat(&format));
    if (format != GUID_WICPixelFormat24bppBGR) {
        out_.fail("PNG files of 24 bits to a pixel are not supported");
    }
}

void PngEncoder::add_row(const unsigned char* pixels) {
    for (std::size_t to = 0; to < row_.size(); to += 3, pixels += 4) {
        std::copy_n(pixels, 3, row_.begin() + std::ptrdiff_t(to));
    }
    const auto bytes = static_cast<UINT>(row_.size());
    check(frame_->WritePixels(1, bytes, bytes, row_.data()));
}

void PngEncoder::write() {
    check(frame_->Commit());
    check(encoder_->Commit());
    STATSTG status = {};
    check(stream_->Stat(&status, STATFLAG_NONAME));
    HGLOBAL memory = nullptr;
    check(GetHGlobalFromStream(stream_.get(), &memory));
    const std::size_t size = status.cbSize.QuadPart;
    errno = 0;
    const std::size_t written = std::fwrite(GlobalLock(memory), 1, size, out_.stream());
    const int error = errno;
    GlobalUnlock(memory);
    if (written != size) {
        out_.fail(std::generic_category().message(error));
    }
}

template <class Interface, class Make>
Com<Interface> PngEncoder::made(const Make& make) {
    Interface* object = nullptr;
    check(make(&object));
    return Com<Interface>(object);
}

void PngEncoder::check(HRESULT result) const {
    if (FAILED(result)) {
        char code[60];
        std::snprintf(code, sizeof code, "the PNG encoder of Windows failed with 0x%08lx",
                      static_cast<unsigned long>(result));
        out_.fail(code);
    }
}

ComOfThread::~ComOfThread() {
    if (SUCCEEDED(result)) {
        CoUninitialize();
    }
}

} // namespace
} // namespace korvel::kit
