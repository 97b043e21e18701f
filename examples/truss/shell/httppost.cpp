// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/httppost.h"

#include "truss/model/text.h"

#include <kel/problem.h>
#include <kel/status.h>
#include <kel/stringtokenizer.h>
#include <kel/translator.h>

#include <curl/curl.h>

#include <chrono>
#include <exception>
#include <memory>

namespace truss
{
namespace
{
constexpr long connectSeconds = 15;
constexpr std::size_t mostReplyBytes = 1 << 20;

/// The library's own state, for the life of the process.
struct Curl
{
    Curl() { curl_global_init(CURL_GLOBAL_DEFAULT); }
    ~Curl() { curl_global_cleanup(); }
};

struct Deleter
{
    void operator()(CURL* transfer) const { curl_easy_cleanup(transfer); }
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using Headers = std::unique_ptr<curl_slist, Deleter>;

/// What the transfer calls back to. No exception may pass through the C library, so it is kept until the transfer ends.
struct Conversation
{
    std::string reply;
    std::exception_ptr failure;
    std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();

    // A transfer mostly waits, which takes no processor time; the status has to be told of it.
    void checkInterrupt()
    {
        const auto now = std::chrono::steady_clock::now();
        const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(now - last);
        last += waited;
        Status& status = Status::getSingleton();
        status.Status::sleep(static_cast<unsigned>(waited.count()));
        status.checkInterrupt(-1);
    }
};

std::size_t receive(char* data, std::size_t size, std::size_t count, void* conversation)
{
    std::string& reply = static_cast<Conversation*>(conversation)->reply;
    if (reply.size() + size * count > mostReplyBytes)
        return 0; // ends the transfer
    reply.append(data, size * count);
    return size * count;
}

int report(void* conversation, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    auto& current = *static_cast<Conversation*>(conversation);
    try
    {
        current.checkInterrupt();
        return 0;
    }
    catch (...)
    {
        current.failure = std::current_exception();
        return 1; // ends the transfer
    }
}

Headers toList(const std::string& headers)
{
    Headers list;
    for (StringTokenizer lines(headers, '\n'); lines.hasNext();)
    {
        curl_slist* const longer = curl_slist_append(list.get(), lines.m_token.c_str());
        static_cast<void>(list.release());
        list.reset(longer);
    }
    return list;
}

void setUp(CURL* transfer, const std::string& address, const std::string& body, Conversation& conversation)
{
    curl_easy_setopt(transfer, CURLOPT_URL, address.c_str());
    curl_easy_setopt(transfer, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(transfer, CURLOPT_POST, 1L);
    curl_easy_setopt(transfer, CURLOPT_POSTFIELDS, body.data());
    curl_easy_setopt(transfer, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYHOST, 2L);
    curl_easy_setopt(transfer, CURLOPT_CONNECTTIMEOUT, connectSeconds);
    curl_easy_setopt(transfer, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(transfer, CURLOPT_WRITEFUNCTION, receive);
    curl_easy_setopt(transfer, CURLOPT_WRITEDATA, &conversation);
    curl_easy_setopt(transfer, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(transfer, CURLOPT_XFERINFOFUNCTION, report);
    curl_easy_setopt(transfer, CURLOPT_XFERINFODATA, &conversation);
}
} // namespace

void HttpPost::addHeader(const std::string& name, const std::string& value)
{
    m_headers += name + ": " + value + '\n';
}

std::string HttpPost::send(const std::string& body) const
{
    static const Curl s_curl;
    const std::unique_ptr<CURL, Deleter> transfer(curl_easy_init());
    const Headers headers = toList(m_headers);
    Conversation conversation;
    setUp(transfer.get(), m_address, body, conversation);
    curl_easy_setopt(transfer.get(), CURLOPT_TIMEOUT_MS, static_cast<long>(m_limit.count()));
    curl_easy_setopt(transfer.get(), CURLOPT_HTTPHEADER, headers.get());

    const CURLcode result = curl_easy_perform(transfer.get());
    if (conversation.failure)
        std::rethrow_exception(conversation.failure);
    const Ztring address = fromUtf8(m_address);
    if (result != CURLE_OK)
        Problem::throwProblem(
            fill(Translator::tr("Failed to post to '%1': %2"), address, Ztring(curl_easy_strerror(result))));
    long code = 0;
    curl_easy_getinfo(transfer.get(), CURLINFO_RESPONSE_CODE, &code);
    if (code < 200 || code >= 300)
        Problem::throwProblem(fill(Translator::tr("'%1' answered with status %2"), address, toText(code)));
    return conversation.reply;
}
} // namespace truss
