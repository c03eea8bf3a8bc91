#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "emulator/certificates/call_status.h"

namespace emulator {

/// A call of a method of one of the printer's objects, as the host sent it:
///
///     <method name="callMethod" requestID="410">
///       <arg name="objName">applications.certMgr</arg>
///       <arg name="method">deleteIndividualCA</arg>
///       <arg name="params"><ListElem><ListElem><MapElem>
///         <child name="ca_common_name"><StringElem>...</StringElem></child>
///       </MapElem></ListElem></ListElem></arg>
///     </method>
struct MethodCall {
  enum class Type { Text, Number, Binary };

  struct Parameter {
    std::string name;
    Type type;
    std::string value;  ///< not converted: a number in decimal digits, a binary in Base64
  };

  std::string object;
  std::string method;
  std::string requestId;
  std::vector<Parameter> parameters;  ///< in the order of the request
};

/// A call, or the reason why a text is not a call.
using ParsedCall = std::variant<MethodCall, CallError>;

/// Parses a method call (XML 1.0 in UTF-8). Returns the call, or the error if `xml` is not a call.
/// A document type declaration, or a reference to an entity other than XML's own five, is an error.
/// Does not check that the object, the method and the parameters exist.
ParsedCall parseMethodCall(std::string_view xml);

/// Returns the method and its parameters as a line of text. Shows a binary only by its size.
std::string describe(const MethodCall& call);

}  // namespace emulator
