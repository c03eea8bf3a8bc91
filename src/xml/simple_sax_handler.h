#pragma once

class attributes;

/// Receives the parts of a document from `SimpleSAXParser`, in document order. Derive a class from
/// this class and override the callbacks that you need. The other callbacks do nothing.
///
///     class Names : public SimpleSAXHandler {
///       void startElement(const char* name, attributes&) override { std::puts(name); }
///     };
class SimpleSAXHandler {
 public:
  SimpleSAXHandler() = default;
  virtual ~SimpleSAXHandler() = default;
  SimpleSAXHandler(const SimpleSAXHandler&) = default;
  SimpleSAXHandler& operator=(const SimpleSAXHandler&) = default;

  /// Called first, before anything is parsed.
  virtual void start() {}

  /// Called after each start tag and each empty-element tag. The parser owns both arguments, which
  /// are valid during the call.
  virtual void startElement(const char* /*name*/, attributes& /*attrs*/) {}

  /// Called after each end tag. For an empty-element tag, called right after `startElement`.
  virtual void endElement(const char* /*name*/) {}

  /// Called for each run of text inside an element, with its entities replaced. `text` ends at its
  /// zero byte and is valid during the call. `len` is the length of the run in the document, before
  /// its entities are replaced, so it may exceed the length of `text`.
  virtual void characters(const char* /*text*/, unsigned int /*len*/) {}

  /// Called last, even after a failure.
  virtual void end() {}

  /// To end the parse, the handler sets this to true in a callback. The parser then continues as if
  /// the document ended there, but calls both callbacks of an empty-element tag. The parser never
  /// sets this to false.
  bool m_Stop = false;
};
