#include <objbase.h>
#include <wincodec.h>

#include <cstdint>

#include "tests/support/pixels.h"

namespace korvel::test {

// What is not released goes with the test program.
Pixels::Pixels(const std::filesystem::path& file) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    IWICImagingFactory* factory = nullptr;
    IWICBitmapDecoder* decoder = nullptr;
    IWICBitmapFrameDecode* frame = nullptr;
    IWICBitmapSource* rgb = nullptr;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_IWICImagingFactory, reinterpret_cast<void**>(&factory))) ||
        FAILED(factory->CreateDecoderFromFilename(file.c_str(), nullptr, GENERIC_READ,
                                                  WICDecodeMetadataCacheOnLoad, &decoder)) ||
        FAILED(decoder->GetFrame(0, &frame)) ||
        FAILED(WICConvertBitmapSource(GUID_WICPixelFormat32bppBGR, frame, &rgb))) {
        return;
    }
    UINT width = 0;
    UINT height = 0;
    rgb->GetSize(&width, &height);
    std::vector<std::uint32_t> pixels(std::size_t(width) * height);
    rgb->CopyPixels(nullptr, 4 * width, static_cast<UINT>(4 * pixels.size()),
                    reinterpret_cast<BYTE*>(pixels.data()));
    width_ = static_cast<int>(width);
    height_ = static_cast<int>(height);
    for (const std::uint32_t pixel : pixels) {
        colours_.push_back(RGB(pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255));
    }
    rgb->Release(); // which keep the file open
    frame->Release();
    decoder->Release();
    factory->Release();
}

} // namespace korvel::test
