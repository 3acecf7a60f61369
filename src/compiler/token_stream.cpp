#include "compiler/token_stream.h"

namespace morvel::ruby::internal {

void TokenStream::readMore() {
    // Enough to make the calls cheap, few enough to stay in the fastest cache.
    constexpr std::size_t kTokens = 512;
    m_window.erase(m_window.begin(), m_window.begin() + static_cast<std::ptrdiff_t>(m_current));
    m_current = 0;
    m_lexer.read(m_window, kTokens);
}

}  // namespace morvel::ruby::internal
