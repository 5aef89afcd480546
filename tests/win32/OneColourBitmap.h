// A picture file for the tests that run on Windows (Wine's platform tests and the end-to-end
// scenarios): a 24-bit bitmap of one colour, laid out byte by byte here, so that what the program
// reads is known without asking the code under test.
#pragma once

#include <windows.h>

#include <fstream>
#include <string>

namespace tamrix::testfiles {

inline void WriteOneColourBitmap(const std::string& path, int w, int h, BYTE r, BYTE g, BYTE b) {
  const int stride = (w * 3 + 3) / 4 * 4;
  BITMAPFILEHEADER fh{};
  BITMAPINFOHEADER ih{};
  ih.biSize = sizeof ih;
  ih.biWidth = w;
  ih.biHeight = h;
  ih.biPlanes = 1;
  ih.biBitCount = 24;
  ih.biSizeImage = static_cast<DWORD>(stride * h);
  fh.bfType = 0x4D42;
  fh.bfOffBits = sizeof fh + sizeof ih;
  fh.bfSize = fh.bfOffBits + ih.biSizeImage;
  std::string pixels(ih.biSizeImage, '\0');
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      pixels[static_cast<std::size_t>(y * stride + x * 3)] = static_cast<char>(b);
      pixels[static_cast<std::size_t>(y * stride + x * 3 + 1)] = static_cast<char>(g);
      pixels[static_cast<std::size_t>(y * stride + x * 3 + 2)] = static_cast<char>(r);
    }
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(&fh), sizeof fh);
  out.write(reinterpret_cast<const char*>(&ih), sizeof ih);
  out.write(pixels.data(), static_cast<std::streamsize>(pixels.size()));
}

}  // namespace tamrix::testfiles
