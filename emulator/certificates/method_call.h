#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "emulator/certificates/call_status.h"

namespace emulator {

/// A call of a method of one of the printer's objects, as the host wrote it.
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
    std::string value;  ///< as written: decimal digits of a number, Base64 of a binary
  };

  std::string object;
  std::string method;
  std::string requestId;
  std::vector<Parameter> parameters;  ///< in the order of the request
};

using ParsedCall = std::variant<MethodCall, CallError>;

/// Reads a method call (XML 1.0 in UTF-8), or says why it is none. Which object and method it
/// names, and whether they have these parameters, is not looked at. A document type, and references
/// to entities other than XML's own five, are not accepted.
ParsedCall parseMethodCall(std::string_view xml);

/// The method and its parameters in words; the content of a binary is told by its size.
std::string describe(const MethodCall& call);

}  // namespace emulator
