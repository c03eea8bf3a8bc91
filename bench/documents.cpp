// Inputs of the benchmarks. They are the same in every run.

#include "documents.h"

#include <array>

namespace bench {

namespace {

std::string child(const std::string& name, const std::string& value) {
  return "<child name=\"" + name + "\">" + value + "</child>";
}

}  // namespace

std::string element(const std::string& name, const std::string& text) {
  return "<" + name + ">" + text + "</" + name + ">";
}

std::vector<unsigned char> randomBytes(std::size_t size) {
  std::vector<unsigned char> bytes(size);
  // A linear congruential generator with a fixed seed.
  unsigned int random = 1;
  for (unsigned char& byte : bytes) {
    random = random * 1664525U + 1013904223U;
    byte = static_cast<unsigned char>(random >> 24U);
  }
  return bytes;
}

std::string repeat(const std::string& text, std::size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) {
    result += text;
  }
  return result;
}

std::string makeReply(std::size_t size) {
  const std::array<std::string, 10> children = {
      child("status_mesg", element("StringElem", "OK")),
      child("x509_O", element("StringElem", "Corner Bakery Ltd.")),
      child("x509_OU", element("StringElem", "Bread &amp; Rolls")),
      child("x509_C", element("StringElem", "IE")),
      child("x509_ST", element("StringElem", "County Clare")),
      child("x509_L", element("StringElem", "Ennis")),
      child("x509_CN", element("StringElem", "printer-17.corner-bakery.example")),
      child("x509_AN", element("StringElem", "DNS:printer-17.local")),
      child("cert_friendly_name", element("StringElem", "Office printer")),
      child("cert_list",
            element("ListElem", element("StringElem", "RootCA_Jan__5_2020_To_Dec_25_2030") +
                                    element("StringElem", "Office_Feb_11_2021_To_Mar__1_2031"))),
  };
  const std::string lastBegin = "<child name=\"last\"><StringElem>";
  const std::string lastEnd = "</StringElem></child></MapElem></response>";
  std::string reply = R"(<?xml version="1.0" encoding="UTF-8"?><response><MapElem>)" +
                      child("status_code", element("IntegerElem", "1"));
  for (std::size_t i = 0;; i = (i + 1) % children.size()) {
    if (reply.size() + children[i].size() + lastBegin.size() + lastEnd.size() > size) {
      break;
    }
    reply += children[i];
  }
  reply += lastBegin;
  reply.append(size - reply.size() - lastEnd.size(), 'x');
  return reply + lastEnd;
}

}  // namespace bench
