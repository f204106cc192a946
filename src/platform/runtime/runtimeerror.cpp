#include "runtime/runtimeerror.h"

#include <utility>

namespace kovanix {

RuntimeError::RuntimeError(int number, QString description, QString source)
    : m_number(number),
      m_description(std::move(description)),
      m_source(std::move(source)),
      m_what((QString::number(number) + u": " + m_description).toUtf8()) {}

}  // namespace kovanix
