// Base64 beside OpenSSL's block functions.

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <openssl/evp.h>
#include <string>
#include <vector>

#include "util/base64.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes makeBytes(const benchmark::State& state) {
  Bytes bytes(static_cast<std::size_t>(state.range(0)));
  unsigned int random = 1;
  for (unsigned char& byte : bytes) {
    random = random * 1664525U + 1013904223U;
    byte = static_cast<unsigned char>(random >> 24U);
  }
  return bytes;
}

std::string encoded(Bytes& bytes) {
  std::string text(4 * ((bytes.size() + 2) / 3), '\0');
  if (Base64::encode(bytes.data(), bytes.size(), text.data(), text.size() + 1) != 1) {
    std::abort();
  }
  return text;
}

/// With a line break behind every 64 characters, as PEM files have it.
std::string withLines(const std::string& text) {
  std::string lines;
  for (std::size_t i = 0; i < text.size(); i += 64) {
    lines += text.substr(i, 64) + "\n";
  }
  return lines;
}

void encodeOurs(benchmark::State& state) {
  Bytes bytes = makeBytes(state);
  std::string text = encoded(bytes);
  while (state.KeepRunning()) {
    Base64::encode(bytes.data(), bytes.size(), text.data(), text.size() + 1);
    benchmark::DoNotOptimize(text.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void encodeTheirs(benchmark::State& state) {
  Bytes bytes = makeBytes(state);
  std::string text = encoded(bytes);
  auto* out = reinterpret_cast<unsigned char*>(text.data());
  while (state.KeepRunning()) {
    EVP_EncodeBlock(out, bytes.data(), static_cast<int>(bytes.size()));
    benchmark::DoNotOptimize(text.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void decodeOurs(benchmark::State& state) {
  Bytes bytes = makeBytes(state);
  const std::string text = encoded(bytes);
  Bytes out(bytes.size() + 3);
  while (state.KeepRunning()) {
    if (Base64::decode(text.c_str(), out.data(), out.size()) != state.range(0)) {
      std::abort();
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void decodeTheirs(benchmark::State& state) {
  Bytes bytes = makeBytes(state);
  const std::string text = encoded(bytes);
  const auto* in = reinterpret_cast<const unsigned char*>(text.data());
  Bytes out(bytes.size() + 3);
  while (state.KeepRunning()) {
    if (EVP_DecodeBlock(out.data(), in, static_cast<int>(text.size())) < state.range(0)) {
      std::abort();
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void decodeLinesOurs(benchmark::State& state) {
  Bytes bytes = makeBytes(state);
  const std::string text = withLines(encoded(bytes));
  Bytes out(bytes.size() + 3);
  while (state.KeepRunning()) {
    if (Base64::decode(text.c_str(), out.data(), out.size()) != state.range(0)) {
      std::abort();
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

/// EVP_DecodeBlock cannot skip line breaks; the streaming functions can.
void decodeLinesTheirs(benchmark::State& state) {
  Bytes bytes = makeBytes(state);
  const std::string text = withLines(encoded(bytes));
  const auto* in = reinterpret_cast<const unsigned char*>(text.data());
  Bytes out(bytes.size() + 3);
  EVP_ENCODE_CTX* context = EVP_ENCODE_CTX_new();
  while (state.KeepRunning()) {
    int size = 0;
    int rest = 0;
    EVP_DecodeInit(context);
    EVP_DecodeUpdate(context, out.data(), &size, in, static_cast<int>(text.size()));
    EVP_DecodeFinal(context, out.data() + size, &rest);
    if (size + rest != state.range(0)) {
      std::abort();
    }
    benchmark::ClobberMemory();
  }
  EVP_ENCODE_CTX_free(context);
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(encodeOurs)->Name("encode/zvkconfig")->Arg(12 << 10)->Arg(1 << 20);
BENCHMARK(encodeTheirs)->Name("encode/openssl")->Arg(12 << 10)->Arg(1 << 20);
BENCHMARK(decodeOurs)->Name("decode/zvkconfig")->Arg(12 << 10)->Arg(1 << 20);
BENCHMARK(decodeTheirs)->Name("decode/openssl")->Arg(12 << 10)->Arg(1 << 20);
BENCHMARK(decodeLinesOurs)->Name("decode lines/zvkconfig")->Arg(12 << 10)->Arg(1 << 20);
BENCHMARK(decodeLinesTheirs)->Name("decode lines/openssl")->Arg(12 << 10)->Arg(1 << 20);
