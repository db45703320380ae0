#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "foundation/dos_time.h"
#include "foundation/westring.h"

namespace OpenFlag {
inline constexpr int Read = 1;
inline constexpr int Write = 2;
inline constexpr int Create = 4;
inline constexpr int Append = 8;  // position at the end after opening
inline constexpr int KeepOnExec = 16;
inline constexpr int Text = 32;  // written newlines become CR LF
}  // namespace OpenFlag

// A buffered file with status codes: 0, an errno value or Status::EndOfFile. Errors stick: after
// one, write does nothing until the next open or a seek that clears it, and close reports bytes
// that never reached the disk. No lock.
class File {
 public:
  File();
  virtual ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  // Closes any open file first. Write without Append truncates. Permission bits 0660. Returns
  // status().
  int open(const Westring& name, int flags);
  int open(const char* utf8Name, int flags);
  // Takes over an open descriptor, which must be above 0.
  void attach(int fd, const Westring& name);
  virtual int close();  // 0 or errno; an error of the flush wins over one of close

  // Status is EndOfFile only when nothing at all was delivered.
  int read(void* buffer, size_t bytes, size_t* got = nullptr);
  int write(const void* buffer, size_t bytes);
  int writeText(const char* text);
  int writeLine(const char* text);  // text and CR LF
  // A line without its CR and LF; one longer than size-1 comes out in pieces.
  int readLine(char* buffer, int size);
  int flush();  // 0 or errno

  int seek(int64_t position);
  int seekBy(int64_t delta);
  int rewind() { return seek(0); }
  int64_t tell() const { return bufPos_ + osPos_ - bufLen_; }
  int64_t fileSize() const;  // of what reached the disk; 0 on failure
  int truncate(int64_t length);
  int getTime(DosTime& words) const;
  int setTime(DosTime words);  // the modification time; the access time becomes now

  int status() const { return status_; }
  bool isOpen() const { return fd_ != 0; }
  int descriptor() const { return fd_; }
  const Westring& name() const { return name_; }

 protected:
  static constexpr int BufferSize = 4096;
  int fd_ = 0;  // 0 means not open: descriptor 0 is never used for a file
  int status_ = 0;

 private:
  int openEncoded(const char* utf8Name, int flags);
  void startEmpty();
  void emptyBuffer();
  int endWriting();
  int alignDescriptor();
  bool readable();
  bool fill();

  std::unique_ptr<char[]> buffer_;
  int bufPos_ = 0;
  int64_t bufLen_ = 0;
  bool writing_ = false;
  int writeError_ = 0;  // bytes that write took never reached the disk
  int64_t osPos_ = 0;
  Westring name_;
  bool textMode_ = false;
};
