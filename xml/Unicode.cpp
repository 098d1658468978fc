#include "xml/Unicode.h"

namespace lumenor::xml {

namespace {

bool IsSurrogate(char32_t codePoint) { return codePoint >= 0xD800 && codePoint <= 0xDFFF; }

bool IsContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

struct Range {
  char32_t first;
  char32_t last;
};

// The name start characters of XML 1.0 (fifth edition) beyond ASCII.
constexpr Range kNameStartRanges[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D},
    {0x2070, 0x218F}, {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};

}  // namespace

DecodedCharacter DecodeUtf8(std::string_view text, size_t position) {
  const auto byteAt = [&text](size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char lead = byteAt(position);
  if (lead < 0x80) {
    return {lead, 1};
  }
  size_t length = 0;
  char32_t codePoint = 0;
  char32_t smallest = 0;
  if ((lead & 0xE0) == 0xC0) {
    length = 2;
    codePoint = lead & 0x1F;
    smallest = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3;
    codePoint = lead & 0x0F;
    smallest = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4;
    codePoint = lead & 0x07;
    smallest = 0x10000;
  } else {
    return {};
  }
  if (text.size() - position < length) {
    return {};
  }
  for (size_t index = 1; index < length; ++index) {
    const unsigned char next = byteAt(position + index);
    if (!IsContinuation(next)) {
      return {};
    }
    codePoint = (codePoint << 6) | (next & 0x3F);
  }
  if (codePoint < smallest || codePoint > 0x10FFFF || IsSurrogate(codePoint)) {
    return {};
  }
  return {codePoint, length};
}

void AppendUtf8(std::string& out, char32_t codePoint) {
  if (codePoint < 0x80) {
    out.push_back(static_cast<char>(codePoint));
  } else if (codePoint < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  } else if (codePoint < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  }
}

Utf16Conversion Utf16ToUtf8(std::string_view bytes, bool bigEndian) {
  Utf16Conversion result;
  result.text.reserve(bytes.size() / 2 * 3);
  const auto unitAt = [&bytes, bigEndian](size_t offset) {
    const auto first = static_cast<unsigned char>(bytes[offset]);
    const auto second = static_cast<unsigned char>(bytes[offset + 1]);
    return bigEndian ? static_cast<char32_t>((first << 8) | second) : static_cast<char32_t>((second << 8) | first);
  };
  size_t offset = 0;
  while (offset < bytes.size()) {
    if (bytes.size() - offset < 2) {
      result.ok = false;
      result.failedAt = offset;
      return result;
    }
    const char32_t unit = unitAt(offset);
    if (!IsSurrogate(unit)) {
      AppendUtf8(result.text, unit);
      offset += 2;
      continue;
    }
    const bool isHigh = unit < 0xDC00;
    const bool lowFollows = bytes.size() - offset >= 4 && unitAt(offset + 2) >= 0xDC00 && unitAt(offset + 2) <= 0xDFFF;
    if (!isHigh || !lowFollows) {
      result.ok = false;
      result.failedAt = offset;
      return result;
    }
    AppendUtf8(result.text, 0x10000 + ((unit - 0xD800) << 10) + (unitAt(offset + 2) - 0xDC00));
    offset += 4;
  }
  return result;
}

bool IsDocumentCharacter(char32_t codePoint) {
  if (codePoint < 0x20) {
    return codePoint == '\t' || codePoint == '\n' || codePoint == '\r';
  }
  return codePoint <= 0x10FFFF && !IsSurrogate(codePoint) && codePoint != 0xFFFE && codePoint != 0xFFFF;
}

bool IsReferenceableCharacter(char32_t codePoint) {
  return codePoint != 0 && codePoint <= 0x10FFFF && !IsSurrogate(codePoint);
}

bool IsNameStartCharacter(char32_t codePoint) {
  if (codePoint < 0x80) {
    return (codePoint >= 'A' && codePoint <= 'Z') || (codePoint >= 'a' && codePoint <= 'z') || codePoint == '_' ||
           codePoint == ':';
  }
  for (const Range& range : kNameStartRanges) {
    if (codePoint >= range.first && codePoint <= range.last) {
      return true;
    }
  }
  return false;
}

bool IsNameCharacter(char32_t codePoint) {
  return IsNameStartCharacter(codePoint) || codePoint == '-' || codePoint == '.' ||
         (codePoint >= '0' && codePoint <= '9') || codePoint == 0xB7 || (codePoint >= 0x300 && codePoint <= 0x36F) ||
         codePoint == 0x203F || codePoint == 0x2040;
}

bool IsXmlName(std::string_view name) {
  size_t position = 0;
  while (position < name.size()) {
    const DecodedCharacter character = DecodeUtf8(name, position);
    if (character.length == 0) {
      return false;
    }
    const bool fits = position == 0 ? IsNameStartCharacter(character.codePoint) : IsNameCharacter(character.codePoint);
    if (!fits) {
      return false;
    }
    position += character.length;
  }
  return !name.empty();
}

}  // namespace lumenor::xml
