#include "archive/zip_file.h"

#include <algorithm>
#include <memory>

#include <zip.h>

namespace quorvane {

namespace {

// 1980-01-01 in local time, the earliest that a ZIP file can say: the same on every machine.
constexpr zip_uint16_t kFixedDate = 0x0021;
constexpr zip_uint16_t kFixedTime = 0;

struct DiscardZip {
  void operator()(zip_t* zip) const { zip_discard(zip); }
};
using ZipHandle = std::unique_ptr<zip_t, DiscardZip>;

struct FreeSource {
  void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using SourceHandle = std::unique_ptr<zip_source_t, FreeSource>;

struct CloseMember {
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using MemberHandle = std::unique_ptr<zip_file_t, CloseMember>;

class ErrorText {
 public:
  ErrorText() { zip_error_init(&error_); }
  ~ErrorText() { zip_error_fini(&error_); }
  ErrorText(const ErrorText&) = delete;
  ErrorText& operator=(const ErrorText&) = delete;
  zip_error_t* Get() { return &error_; }
  std::string Text() { return zip_error_strerror(&error_); }

 private:
  zip_error_t error_;
};

[[noreturn]] void Fail(const std::string& what, const std::string& why) {
  throw ArchiveFault(what + ": " + why);
}

// A ZIP file over the bytes, which it does not own, and its source, kept for reading it later.
struct OpenZip {
  ZipHandle zip;
  SourceHandle kept;
};

OpenZip Open(std::string_view bytes, int flags) {
  ErrorText error;
  SourceHandle source(zip_source_buffer_create(bytes.data(), bytes.size(), 0, error.Get()));
  if (!source) Fail("the archive", error.Text());
  ZipHandle zip(zip_open_from_source(source.get(), flags, error.Get()));
  if (!zip) Fail("the archive", error.Text());
  zip_source_keep(source.get());  // the ZIP file took the first hold
  return {std::move(zip), std::move(source)};
}

void Add(zip_t* zip, const ZipMember& member) {
  SourceHandle source(zip_source_buffer(zip, member.bytes.data(), member.bytes.size(), 0));
  if (!source) Fail(member.name, zip_strerror(zip));
  const zip_int64_t at = zip_file_add(zip, member.name.c_str(), source.get(), 0);
  if (at < 0) Fail(member.name, zip_strerror(zip));
  static_cast<void>(source.release());
  const auto index = static_cast<zip_uint64_t>(at);
  if (zip_set_file_compression(zip, index, ZIP_CM_DEFLATE, 0) != 0 ||
      zip_file_set_dostime(zip, index, kFixedTime, kFixedDate, 0) != 0) {
    Fail(member.name, zip_strerror(zip));
  }
}

std::string TakeBytes(zip_source_t* source) {
  zip_stat_t stat;
  if (zip_source_stat(source, &stat) != 0 || zip_source_open(source) != 0) {
    Fail("the archive", zip_error_strerror(zip_source_error(source)));
  }
  std::string bytes(stat.size, '\0');
  const zip_int64_t got = zip_source_read(source, bytes.data(), bytes.size());
  zip_source_close(source);
  if (got < 0 || static_cast<std::size_t>(got) != bytes.size()) Fail("the archive", "short read");
  return bytes;
}

// Reads one member in pieces: a forged length must not decide how much memory is taken.
Bytes Extract(zip_t* zip, zip_uint64_t index, const std::string& name) {
  zip_stat_t stat;
  if (zip_stat_index(zip, index, 0, &stat) != 0) Fail(name, zip_strerror(zip));
  if (stat.encryption_method != ZIP_EM_NONE) Fail(name, "is encrypted");
  if (stat.size > kLongestMember) {
    Fail(name, "claims to have " + std::to_string(stat.size) + " bytes");
  }
  const MemberHandle file(zip_fopen_index(zip, index, 0));
  if (!file) Fail(name, zip_strerror(zip));
  constexpr std::size_t kPiece = std::size_t{1} << 18U;
  Bytes bytes;
  for (;;) {
    const std::size_t before = bytes.size();
    bytes.resize(before + kPiece);
    const zip_int64_t got = zip_fread(file.get(), bytes.data() + before, kPiece);
    if (got < 0) Fail(name, zip_file_strerror(file.get()));
    bytes.resize(before + static_cast<std::size_t>(got));
    if (got == 0) break;
    if (bytes.size() > stat.size) Fail(name, "is longer than it claims");
  }
  if (bytes.size() != stat.size) Fail(name, "is shorter than it claims");
  return bytes;
}

}  // namespace

std::string WriteZip(const std::vector<ZipMember>& members, const std::string& comment) {
  if (comment.size() > kLongestComment) Fail("the comment", "is too long");
  OpenZip archive = Open({}, ZIP_TRUNCATE);
  for (const ZipMember& member : members) Add(archive.zip.get(), member);
  const auto length = static_cast<zip_uint16_t>(comment.size());
  if (length > 0 && zip_set_archive_comment(archive.zip.get(), comment.data(), length) != 0) {
    Fail("the comment", zip_strerror(archive.zip.get()));
  }
  if (zip_close(archive.zip.get()) != 0) Fail("the archive", zip_strerror(archive.zip.get()));
  static_cast<void>(archive.zip.release());
  return TakeBytes(archive.kept.get());
}

std::string ReadZipComment(std::string_view zip) {
  const OpenZip archive = Open(zip, ZIP_RDONLY | ZIP_CHECKCONS);
  int length = 0;
  const char* comment = zip_get_archive_comment(archive.zip.get(), &length, ZIP_FL_ENC_RAW);
  return comment == nullptr ? std::string()
                            : std::string(comment, static_cast<std::size_t>(length));
}

std::vector<ZipMember> ReadZip(std::string_view zip, const std::vector<std::string>& wanted) {
  if (zip.empty()) Fail("the archive", "is empty");
  const OpenZip archive = Open(zip, ZIP_RDONLY | ZIP_CHECKCONS);
  std::vector<ZipMember> members;
  for (const std::string& name : wanted) {
    const zip_int64_t index = zip_name_locate(archive.zip.get(), name.c_str(), ZIP_FL_NOCASE);
    if (index < 0) continue;
    members.push_back({name, Extract(archive.zip.get(), static_cast<zip_uint64_t>(index), name)});
  }
  return members;
}

}  // namespace quorvane
