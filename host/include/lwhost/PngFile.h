#pragma once

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace lwhost {

class Raster;

// A PNG file that cannot be written; what() is "cannot write PATH: reason".
class PngFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// An 8-bit RGB PNG written as it is encoded: the file is opened, and its signature and header
// written, when the object is made, so that an unwritable path fails before anything is
// rendered; rows then go out in deflate's stored blocks through a buffer of one block, so
// writing never holds a second copy of the image. The bytes are those of Raster::encodePng.
//
// A regular file (or a new one) is written under a temporary name in the same folder and takes
// its real name only in finish(): a render that fails leaves neither a half-written file nor
// a damaged earlier one. Anything else (a device, a pipe) is written directly.
class PngFile {
 public:
  // Throws PngFileError; sizes must be 1..Raster::kMaxSide.
  PngFile(const std::string& path, int width, int height);
  ~PngFile();  // removes the temporary file unless finished
  PngFile(const PngFile&) = delete;
  PngFile& operator=(const PngFile&) = delete;

  // One row of width * 3 bytes; rows come top to bottom. Throws PngFileError.
  void writeRow(const unsigned char* rgb);
  // Every row of an image of the file's size.
  void writeImage(const Raster& image);
  // After the last row: ends the stream and gives the file its name. Throws PngFileError.
  void finish();

  const std::string& path() const { return path_; }

 private:
  void put(const void* data, std::size_t size);
  void chunk(const char type[4], const unsigned char* data, std::size_t size);
  void raw(const unsigned char* data, std::size_t size);
  void data(const unsigned char* bytes, std::size_t size);  // inside the IDAT chunk
  void flushBlock(bool last);
  [[noreturn]] void fail(const std::string& why);

  std::string path_, writing_;
  std::FILE* file_ = nullptr;
  int width_, height_, rows_ = 0;
  std::vector<unsigned char> block_;
  std::size_t used_ = 0;
  std::uint32_t adler_ = 1;
  bool finished_ = false;
  std::uint32_t crc_ = 0;  // of the IDAT chunk so far
};

}  // namespace lwhost
