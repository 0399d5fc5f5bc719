// codec_commands.cpp: `zeb base64 [-d] [FILE...]` and `zeb qp [-d] [FILE...]`, the library's
// Base64 and quoted-printable text of the inputs (read one after the other as one stream), or
// with -d the bytes that text stands for. Encoded text ends with a line feed. Quoted-printable
// decoding reads '_' as a space, so text holding '_' does not come back unchanged.
#include <climits>
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct CodecOptions {
  bool decode = false;
  std::vector<std::string> files;
};

using Codec = int (*)(const char* data, int length, TAnsiString& out);

// The inputs one after the other; false (reported) when one cannot be read or all of them are
// too long for the codecs.
bool readAll(const std::vector<std::string>& files, std::string& content) {
  for (const std::string& path : inputsOrStdin(files)) {
    std::string part;
    if (!readInput(path, part)) return false;
    content += part;
  }
  if (content.size() > INT_MAX / 4) {
    reportError("the input is too long");
    return false;
  }
  return true;
}

int runCodec(const CodecOptions& options, Codec encode, Codec decode) {
  std::string input;
  if (!readAll(options.files, input)) return kFailure;
  TAnsiString out;
  const int length = (options.decode ? decode : encode)(input.data(),
                                                        static_cast<int>(input.size()), out);
  std::string result = length > 0 ? std::string(out.p(), static_cast<size_t>(length)) : "";
  if (!options.decode && !result.empty()) result += "\n";
  return writeOutput(result) ? kSuccess : kFailure;
}

// Base64 decoding of a whole input: a final line feed is no part of the text.
int decodeBase64(const char* data, int length, TAnsiString& out) {
  while (length > 0 && (data[length - 1] == '\n' || data[length - 1] == '\r')) --length;
  return tbase64codec::Decode(data, length, out);
}

// Quoted-printable decoding of a whole input: the line feed that ends the text is dropped too.
int decodeQuotedPrintable(const char* data, int length, TAnsiString& out) {
  if (length > 0 && data[length - 1] == '\n') --length;
  if (length > 0 && data[length - 1] == '\r') --length;
  return length > 0 ? tqpcodec::Decode(data, length, out) : 0;
}

void addCodecCommand(CLI::App& app, ToolRun& run, const char* name, const char* description,
                     Codec encode, Codec decode) {
  auto options = std::make_shared<CodecOptions>();
  CLI::App* command = app.add_subcommand(name, description);
  command->add_flag("-d,--decode", options->decode, "decode instead of encoding");
  command->add_option("files", options->files, "inputs (standard input without FILE or with -)");
  command->callback([options, &run, encode, decode] {
    run.status = runCodec(*options, encode, decode);
  });
}

}  // namespace

void addCodecCommands(CLI::App& app, ToolRun& run) {
  addCodecCommand(app, run, "base64",
                  "Base64 text of the input (CR LF after every 76 characters), or with -d its "
                  "bytes.",
                  &tbase64codec::Encode, &decodeBase64);
  addCodecCommand(app, run, "qp",
                  "Quoted-printable text of the input, or with -d its bytes ('_' decodes to a "
                  "space, as in mail headers).",
                  &tqpcodec::Encode, &decodeQuotedPrintable);
}

}  // namespace zebtool
