#include <ku/i18n/codecvt.hpp>

#if __has_include(<ku/i18n/Transcoder.hpp>)
#error "the platform of this test has a transcoder: nothing would be tested"
#endif
