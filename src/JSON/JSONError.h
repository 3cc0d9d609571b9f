#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace torv {

inline constexpr std::string_view jsonErrorDomain = "org.torvjson.JSON.ErrorDomain";

/// Why a text could not be read or a value not be written. `underlying` is the error that led to this
/// one; following it ends at the cause.
struct JSONError {
    std::string_view domain = jsonErrorDomain;
    int code = 0;
    std::string description;
    std::shared_ptr<const JSONError> underlying;
};

/// A row of the error table. "%@" and "%x" stand for the one argument that a text may have.
struct JSONFault {
    int code;
    std::string_view text;
};

namespace json_fault {

inline constexpr JSONFault unsupportedType{1, "JSON serialisation not supported for %@"};
inline constexpr JSONFault keyNotText{1, "JSON object key must be string"};  // keys are texts by type here
inline constexpr JSONFault unsupportedValueForKey{1, "Unsupported value for key %@ in object"};

inline constexpr JSONFault leadingPlus{2, "Leading + disallowed in number"};
inline constexpr JSONFault leadingZero{2, "Leading 0 disallowed in number"};
inline constexpr JSONFault noDigitsAfterMinus{2, "No digits after initial minus"};
inline constexpr JSONFault noDigitsAfterPoint{2, "No digits after decimal point"};
inline constexpr JSONFault noDigitsAfterExponent{2, "No digits after exponent"};
inline constexpr JSONFault noDecimal{2, "Failed creating decimal instance"};  // a number keeps any text

inline constexpr JSONFault unrecognisedCharacter{3, "Unrecognised leading character"};
inline constexpr JSONFault expectedTrue{3, "Expected 'true'"};
inline constexpr JSONFault expectedFalse{3, "Expected 'false'"};
inline constexpr JSONFault expectedNull{3, "Expected 'null'"};
inline constexpr JSONFault expectedValueInArray{3, "Expected value while parsing array"};
inline constexpr JSONFault expectedKey{3, "Object key string expected"};
inline constexpr JSONFault expectedColon{3, "Expected ':' separating key and value"};
inline constexpr JSONFault expectedValueForKey{3, "Object value expected for key: %@"};

inline constexpr JSONFault fragmentOnly{4, "Valid fragment, but not JSON"};
inline constexpr JSONFault notTopLevelType{4, "Not valid type for JSON"};

inline constexpr JSONFault controlCharacter{5, "Unescaped control character '0x%x'"};

inline constexpr JSONFault brokenUnicode{6, "Broken unicode character"};
inline constexpr JSONFault missingHexQuad{6, "Missing hex quad"};
inline constexpr JSONFault missingHexDigit{6, "Missing hex digit in quad"};
inline constexpr JSONFault invalidHighSurrogate{6, "Invalid high character in surrogate pair"};
inline constexpr JSONFault missingLowSurrogate{6, "Missing low character in surrogate pair"};
inline constexpr JSONFault invalidLowSurrogate{6, "Invalid low surrogate char"};

inline constexpr JSONFault nestedTooDeep{7, "Nested too deep"};

inline constexpr JSONFault illegalEscape{8, "Illegal escape sequence '0x%x'"};

inline constexpr JSONFault trailingCommaInArray{9, "Trailing comma disallowed in array"};
inline constexpr JSONFault trailingCommaInObject{9, "Trailing comma disallowed in object"};

inline constexpr JSONFault garbageBehind{10, "Garbage after JSON"};

inline constexpr JSONFault endOfInput{11, "Unexpected end of string"};
inline constexpr JSONFault endInArray{11, "End of input while parsing array"};
inline constexpr JSONFault endInObject{11, "End of input while parsing object"};
inline constexpr JSONFault endInString{11, "Unexpected EOF while parsing string"};

inline constexpr JSONFault noInput{12, "Input was 'nil'"};

}  // namespace json_fault
}  // namespace torv
