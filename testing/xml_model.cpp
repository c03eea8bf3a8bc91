// The model of the parser and of the path queries.

#include "testing/xml_model.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace xml_model {

namespace {

bool isSpace(char c) {
  return c == '\t' || c == '\n' || c == '\r' || c == ' ';
}

bool isNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == ':' || c == '_';
}

bool isNamePart(char c) {
  return isNameStart(c) || c == '-' || c == '.' || (c >= '0' && c <= '9');
}

std::string translated(const std::string& entity) {
  static const std::map<std::string, std::string> all = {
      {"&amp;", "&"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&lt;", "<"}, {"&gt;", ">"}};
  const auto found = all.find(entity);
  return found == all.end() ? "" : found->second;
}

/// Finds one entity, replaces it, and continues one character after its start.
std::string withoutEntities(std::string text) {
  std::size_t ampersand = text.find('&');
  while (ampersand != std::string::npos) {
    const std::size_t semicolon = text.find(';', ampersand);
    if (semicolon != std::string::npos) {
      const std::size_t length = semicolon - ampersand + 1;
      text.replace(ampersand, length, translated(text.substr(ampersand, length)));
    }
    ampersand = text.find('&', ampersand + 1);
  }
  return text;
}

class Parser {
 public:
  Parser(const std::string& document, const OnEvent& onEvent, std::string& output)
      : m_Text(document.c_str()), m_OnEvent(onEvent), m_Output(output) {}

  int parse() {
    emit({Event::Kind::Start, "", {}});
    honourStop();
    bool isGood = true;
    while (isGood && !isAtEnd() && !(here() == '<' && isNameStart(here(1)))) {
      isGood = skipMarkup();
    }
    isGood = isGood && content();
    emit({Event::Kind::End, "", {}});
    return isGood ? 0 : -1;
  }

 private:
  bool isAtEnd() const { return m_At >= m_Text.size(); }
  /// Returns a character, or a zero byte after the end. The document has no zero byte.
  char here(std::size_t ahead = 0) const {
    return m_At + ahead < m_Text.size() ? m_Text[m_At + ahead] : '\0';
  }
  void skipSpace() {
    while (isSpace(here())) {
      ++m_At;
    }
  }

  void emit(const Event& event) { m_IsStopped = m_OnEvent(event) || m_IsStopped; }
  void honourStop() { m_At = m_IsStopped ? m_Text.size() : m_At; }

  /// Skips an instruction, a comment, or one other character.
  bool skipMarkup() {
    if (here() == '<' && here(1) == '?') {
      m_At += 1;
      return skipPast("?>");
    }
    if (here() == '<' && here(1) == '!') {
      m_At += 2;
      return skipPast("-->");
    }
    ++m_At;
    return true;
  }

  bool skipPast(const std::string& token) {
    while (!isAtEnd()) {
      if (m_Text.compare(m_At, token.size(), token) == 0) {
        m_At += token.size();
        return true;
      }
      ++m_At;
    }
    return false;
  }

  bool content() {
    bool isGood = true;
    while (isGood && !isAtEnd()) {
      if (here() == '<' && isNameStart(here(1))) {
        isGood = openTag();
      } else if (here() == '<' && here(1) == '/') {
        isGood = closeTag();
      } else if (here() == '<') {
        isGood = skipMarkup();
      } else if (!m_Open.empty()) {
        text();
      } else if (isSpace(here())) {
        ++m_At;
      } else {
        m_Output += "dunno what to do?!\n";
        isGood = false;
      }
    }
    if (!isGood) {
      m_Output += isAtEnd() ? "<<end of string>>\n"
                            : "Parsing error at character " + std::to_string(m_At) + ", '" +
                                  std::string(1, here()) + "'\n";
    }
    return isGood;
  }

  void text() {
    skipSpace();
    std::string run;
    while (!isAtEnd() && here() != '<') {
      run += m_Text[m_At++];
    }
    if (!run.empty()) {
      emit({Event::Kind::Text, withoutEntities(run), {}, run.size()});
      honourStop();
    }
  }

  std::string takeName() {
    std::string name;
    while (isNamePart(here())) {
      name += m_Text[m_At++];
    }
    return name;
  }

  bool elementName(std::string& name) {
    if (!isNameStart(here())) {
      return false;
    }
    for (const char* reserved : {"xml", "XML", "Xml", "XMl", "xML", "xmL", "XmL"}) {
      if (m_Text.compare(m_At, 3, reserved) == 0) {
        return false;
      }
    }
    name = takeName();
    return true;
  }

  bool attribute(Event& event) {
    if (!isNameStart(here())) {
      return false;
    }
    const std::string name = takeName();
    skipSpace();
    if (here() != '=') {
      return false;
    }
    ++m_At;
    skipSpace();
    if (here() != '"') {
      return false;
    }
    ++m_At;
    std::string value;
    while (!isAtEnd() && here() != '"') {
      value += m_Text[m_At++];
    }
    if (isAtEnd()) {
      return false;
    }
    event.attributes[name] = withoutEntities(value);
    ++m_At;
    return true;
  }

  bool openTag() {
    Event event{Event::Kind::Open, "", {}};
    ++m_At;
    if (!elementName(event.text)) {
      return false;
    }
    skipSpace();
    while (!isAtEnd() && here() != '>' && !(here() == '/' && here(1) == '>')) {
      if (!attribute(event)) {
        return false;
      }
      skipSpace();
    }
    const bool isEmpty = here() == '/';
    // Skips "/>" or ">", unless the document ends here.
    m_At = std::min(m_At + (isEmpty ? 2U : 1U), m_Text.size());
    emit(event);
    if (isEmpty) {
      emit({Event::Kind::Close, event.text, {}});
    } else {
      m_Open.push_back(event.text);
    }
    honourStop();
    return true;
  }

  bool closeTag() {
    m_At += 2;
    std::string name;
    if (!elementName(name) || m_Open.empty() || name != m_Open.back()) {
      return false;
    }
    skipSpace();
    if (here() != '>') {
      return false;
    }
    ++m_At;
    emit({Event::Kind::Close, name, {}});
    honourStop();
    m_Open.pop_back();
    return true;
  }

  std::string m_Text;
  const OnEvent& m_OnEvent;
  std::string& m_Output;
  std::size_t m_At = 0;
  bool m_IsStopped = false;
  std::vector<std::string> m_Open;
};

std::string trimmed(std::string text) {
  while (text.starts_with(' ')) {
    text.erase(0, 1);
  }
  while (text.ends_with(' ')) {
    text.pop_back();
  }
  return text;
}

struct Step {
  enum class Filter { None, Never, Position, Attribute };

  std::string name;
  Filter filter = Filter::None;
  long position = 0;
  std::string attribute;
  std::string value;
};

/// Reads the filter between the brackets of a step.
void readFilter(const std::string& filter, Step& step) {
  step.position = std::strtol(trimmed(filter).c_str(), nullptr, 10);
  if (step.position >= 1 && step.position <= 9) {
    step.filter = Step::Filter::Position;
    return;
  }
  const std::size_t at = filter.find('@');
  if (at == std::string::npos) {
    step.filter = Step::Filter::Never;
    return;
  }
  const std::size_t equals = filter.find('=', at);
  const std::size_t quote = equals == std::string::npos ? equals : filter.find('\'', equals);
  const std::size_t end = quote == std::string::npos ? quote : filter.find('\'', quote + 1);
  if (end == std::string::npos) {
    return;
  }
  step.attribute = trimmed(filter.substr(at + 1, equals - at - 1));
  step.value = filter.substr(quote + 1, end - quote - 1);
  // A step with an empty name of the attribute has no filter. No attribute has the names of the
  // real code's markers.
  if (step.attribute == "<INDEX>" || step.attribute == "<UNDEFINED>") {
    step.filter = Step::Filter::Never;
  } else if (!step.attribute.empty()) {
    step.filter = Step::Filter::Attribute;
  }
}

std::vector<Step> stepsOf(const std::string& path) {
  std::vector<Step> steps;
  for (std::size_t slash = path.find('/'); slash != std::string::npos;) {
    const std::size_t next = path.find('/', slash + 1);
    const std::string text = trimmed(path.substr(slash + 1, next - slash - 1));
    slash = next;
    if (text.empty()) {
      continue;
    }
    Step step;
    const std::size_t open = text.find('[');
    step.name = trimmed(text.substr(0, open));
    const std::size_t close = open == std::string::npos ? open : text.find(']', open);
    if (close != std::string::npos) {
      readFilter(text.substr(open + 1, close - open - 1), step);
    }
    steps.push_back(step);
  }
  return steps;
}

/// An open element, or the element that closed last.
struct Element {
  Event opened{Event::Kind::Open, "", {}};
  long position = 0;
  std::string text;
};

bool matches(const Step& step, const Element& element) {
  const auto& attributes = element.opened.attributes;
  const auto value = attributes.find(step.attribute);
  return step.name == element.opened.text && step.filter != Step::Filter::Never &&
         (step.filter != Step::Filter::Position || step.position == element.position) &&
         (step.filter != Step::Filter::Attribute ||
          step.value == (value == attributes.end() ? "" : value->second));
}

bool matches(const std::vector<Step>& steps, const std::vector<Element>& open) {
  bool isMatch = steps.size() == open.size();
  for (std::size_t i = 0; isMatch && i < steps.size(); ++i) {
    isMatch = matches(steps[i], open[i]);
  }
  return isMatch;
}

}  // namespace

int parse(const std::string& document, const OnEvent& onEvent, std::string& output) {
  return Parser(document, onEvent, output).parse();
}

std::string lineOf(const Event& event) {
  std::string line;
  switch (event.kind) {
    case Event::Kind::Start:
      return "start";
    case Event::Kind::End:
      return "end";
    case Event::Kind::Close:
      return ">" + event.text;
    case Event::Kind::Text:
      return "\"" + event.text + "\" " + std::to_string(event.length);
    case Event::Kind::Open:
      line = "<" + event.text;
      for (const auto& [name, value] : event.attributes) {
        line.append(" ").append(name).append("=\"").append(value).append("\"");
      }
      return line;
  }
  return line;
}

std::string query(const std::string& document, const std::string& path, std::string& output) {
  const std::vector<Step> steps = stepsOf(path);
  std::vector<Element> open;
  Element closed;
  std::string result;
  const auto onEvent = [&](const Event& event) {
    bool isFound = false;
    if (event.kind == Event::Kind::Open) {
      const long position = closed.opened.text == event.text ? closed.position + 1 : 1;
      open.push_back({event, position, ""});
    } else if (event.kind == Event::Kind::Text) {
      open.back().text += event.text;
    } else if (event.kind == Event::Kind::Close) {
      isFound = matches(steps, open);
      result = isFound ? open.back().text : result;
      closed = open.back();
      open.pop_back();
    }
    return isFound;
  };
  parse(document, onEvent, output);
  return result;
}

std::vector<std::string> queryList(const std::string& document, const std::string& path,
                                   std::string& output) {
  std::vector<std::string> texts;
  for (int position = 1;; ++position) {
    std::string text = query(document, path + "[" + std::to_string(position) + "]", output);
    if (text.empty()) {
      return texts;
    }
    texts.push_back(std::move(text));
  }
}

}  // namespace xml_model
