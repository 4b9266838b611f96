// SPDX-License-Identifier: MIT
// The application's digest against two of the published MD5, which computes with 32 bits.

#include "md5.h"

#include <QCryptographicHash>

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <vector>

namespace {

std::vector<char> message(benchmark::State const& state)
{
    std::vector<char> bytes(std::size_t(state.range(0)));
    unsigned int value = 1;
    for (char& byte : bytes) {
        value = value * 1664525U + 1013904223U;
        byte = char(value >> 24);
    }
    return bytes;
}

void count(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void ours(benchmark::State& state)
{
    auto const bytes = message(state);
    for (auto _ : state) {
        MD5 md5(bytes.data(), bytes.size());
        benchmark::DoNotOptimize(md5.digest());
    }
    count(state);
}

void peerQt(benchmark::State& state)
{
    auto const bytes = message(state);
    for (auto _ : state) {
        QCryptographicHash hash(QCryptographicHash::Md5);
        hash.addData(bytes.data(), int(bytes.size()));
        benchmark::DoNotOptimize(hash.result());
    }
    count(state);
}

void peerOpenSsl(benchmark::State& state)
{
    auto const bytes = message(state);
    unsigned char digest[EVP_MAX_MD_SIZE];
    EVP_MD_CTX* const context = EVP_MD_CTX_new();
    for (auto _ : state) {
        EVP_DigestInit_ex(context, EVP_md5(), nullptr);
        EVP_DigestUpdate(context, bytes.data(), bytes.size());
        EVP_DigestFinal_ex(context, digest, nullptr);
        benchmark::DoNotOptimize(digest);
    }
    EVP_MD_CTX_free(context);
    count(state);
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgName("bytes");
    for (int const size : {16, 1024, 64 << 20})
        benchmark->Arg(size);
}

BENCHMARK(ours)->Apply(sizes);
BENCHMARK(peerQt)->Apply(sizes);
BENCHMARK(peerOpenSsl)->Apply(sizes);

} // namespace
