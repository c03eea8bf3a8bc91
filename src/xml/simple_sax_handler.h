#pragma once

class attributes;

/// What `SimpleSAXParser` tells about a document, in document order. Every callback does nothing
/// unless it is overridden.
class SimpleSAXHandler {
 public:
  SimpleSAXHandler() = default;
  virtual ~SimpleSAXHandler() = default;
  SimpleSAXHandler(const SimpleSAXHandler&) = default;
  SimpleSAXHandler& operator=(const SimpleSAXHandler&) = default;

  /// Comes first, before anything is parsed.
  virtual void start() {}

  /// Comes after each start tag and empty-element tag. Both arguments are the parser's and end with
  /// the call.
  virtual void startElement(const char* /*name*/, attributes& /*attrs*/) {}

  /// Comes after each end tag, and right after `startElement` for an empty-element tag.
  virtual void endElement(const char* /*name*/) {}

  /// Comes for each run of text inside an element, its entities replaced. `text` ends at its zero
  /// byte and with the call; `len` is the count of characters that the run takes in the document,
  /// with its entities, and so may exceed the length of `text`.
  virtual void characters(const char* /*text*/, unsigned int /*len*/) {}

  /// Comes last, also after a failure.
  virtual void end() {}

  /// Set by the handler, during any callback, to end the parse as if the document ended there. The
  /// parser never clears it.
  bool m_Stop = false;
};
