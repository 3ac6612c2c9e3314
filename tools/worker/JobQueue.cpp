#include "JobQueue.h"

#include <mutex>
#include <nats/nats.h>
#include <utility>

namespace caddis::tool {

namespace {

constexpr const char* ConsumerName = "workers"; // of all workers together
constexpr std::int64_t Nanoseconds = 1'000'000'000;
constexpr std::int64_t FetchMilliseconds = 1000;
constexpr std::int64_t AnswerMilliseconds = 10'000;
constexpr std::int64_t ReconnectMilliseconds = 250;
constexpr std::int64_t MostUnconfirmed = 4000;
constexpr std::int64_t MostOutstanding = 20'000; // jobs, of all workers together

void check(natsStatus status, const char* what, int code = 0)
{
    if (status == NATS_OK)
        return;
    std::string text = std::string(what) + ": " + natsStatus_GetText(status);
    if (code)
        text += " (JetStream error " + std::to_string(code) + ')';
    throw QueueError(text);
}

template <auto destroy> struct Destroy {
    template <typename T> void operator()(T* object) const { destroy(object); }
};

template <typename T, auto destroy> using Owned = std::unique_ptr<T, Destroy<destroy>>;

using Options = Owned<natsOptions, natsOptions_Destroy>;
using Connection = Owned<natsConnection, natsConnection_Destroy>;
using JetStream = Owned<jsCtx, jsCtx_Destroy>;
using Subscription = Owned<natsSubscription, natsSubscription_Destroy>;

} // namespace

struct Delivery::Message {
    explicit Message(natsMsg* message)
        : pointer(message)
    {
    }
    std::mutex lock; // The library's messages are for one thread at a time.
    Owned<natsMsg, natsMsg_Destroy> pointer;
};

struct JobQueue::Implementation {
    std::string name;
    Connection connection;
    JetStream stream;
    Subscription subscription;

    void connect(const std::string& server);
    void addStream(
        const std::string& streamName, const std::string& subject, jsRetentionPolicy retention) const;
};

void JobQueue::Implementation::connect(const std::string& server)
{
    natsOptions* made = nullptr;
    check(natsOptions_Create(&made), "no memory");
    const Options options(made);
    check(natsOptions_SetURL(made, server.c_str()), server.c_str());
    natsOptions_SetMaxReconnect(made, -1);
    natsOptions_SetReconnectWait(made, ReconnectMilliseconds);
    natsConnection* opened = nullptr;
    check(natsConnection_Connect(&opened, made), server.c_str());
    connection.reset(opened);
    jsOptions settings;
    jsOptions_Init(&settings);
    settings.Wait = AnswerMilliseconds;
    settings.PublishAsync.MaxPending = MostUnconfirmed;
    jsCtx* context = nullptr;
    check(natsConnection_JetStream(&context, opened, &settings), "JetStream");
    stream.reset(context);
}

void JobQueue::Implementation::addStream(
    const std::string& streamName, const std::string& subject, jsRetentionPolicy retention) const
{
    jsStreamInfo* information = nullptr;
    auto code = static_cast<jsErrCode>(0);
    if (js_GetStreamInfo(&information, stream.get(), streamName.c_str(), nullptr, &code) != NATS_OK) {
        const char* subjects[] = { subject.c_str() };
        jsStreamConfig config;
        jsStreamConfig_Init(&config);
        config.Name = streamName.c_str();
        config.Subjects = subjects;
        config.SubjectsLen = 1;
        config.Retention = retention;
        config.Storage = js_FileStorage;
        check(js_AddStream(&information, stream.get(), &config, nullptr, &code), streamName.c_str(), code);
    }
    jsStreamInfo_Destroy(information);
}

JobQueue::JobQueue(const std::string& server, const std::string& name)
    : m_implementation(std::make_unique<Implementation>())
{
    m_implementation->name = name;
    m_implementation->connect(server);
    m_implementation->addStream(name, name + ".jobs", js_WorkQueuePolicy);
    m_implementation->addStream(name + "_dead", name + ".dead", js_LimitsPolicy);
}

JobQueue::~JobQueue() = default;

void JobQueue::subscribe(unsigned patience)
{
    jsSubOptions options;
    jsSubOptions_Init(&options);
    options.Stream = m_implementation->name.c_str();
    options.Config.AckPolicy = js_AckExplicit;
    options.Config.AckWait = patience * Nanoseconds;
    options.Config.MaxAckPending = MostOutstanding;
    options.Config.MaxDeliver = -1; // The dead are counted here, so that none is lost without a word.
    natsSubscription* made = nullptr;
    auto code = static_cast<jsErrCode>(0);
    check(js_PullSubscribe(&made, m_implementation->stream.get(), (m_implementation->name + ".jobs").c_str(),
              ConsumerName, nullptr, &options, &code),
        "subscribing", code);
    m_implementation->subscription.reset(made);
}

void JobQueue::publish(const std::string& job, const std::string& identifier)
{
    jsPubOptions options;
    jsPubOptions_Init(&options);
    options.MsgId = identifier.c_str();
    check(js_PublishAsync(m_implementation->stream.get(), (m_implementation->name + ".jobs").c_str(),
              job.data(), static_cast<int>(job.size()), &options),
        "publishing");
}

void JobQueue::flush()
{
    jsPubOptions options;
    jsPubOptions_Init(&options);
    options.MaxWait = AnswerMilliseconds;
    check(js_PublishAsyncComplete(m_implementation->stream.get(), &options), "publishing");
    natsMsgList failed = {};
    if (js_PublishAsyncGetPendingList(&failed, m_implementation->stream.get()) != NATS_OK)
        return; // There are none.
    const int count = failed.Count;
    natsMsgList_Destroy(&failed);
    if (count > 0)
        throw QueueError(std::to_string(count) + " jobs were not stored");
}

std::vector<DeliveryPointer> JobQueue::fetch(int most)
{
    natsMsgList list = {};
    std::vector<DeliveryPointer> deliveries;
    const natsStatus status = natsSubscription_Fetch(
        &list, m_implementation->subscription.get(), most, FetchMilliseconds, nullptr);
    if (status != NATS_OK && status != NATS_TIMEOUT)
        nats_Sleep(ReconnectMilliseconds);
    for (int index = 0; index < list.Count; ++index) {
        auto message = std::make_shared<Delivery::Message>(std::exchange(list.Msgs[index], nullptr));
        natsMsg* const pointer = message->pointer.get();
        jsMsgMetaData* metadata = nullptr;
        const bool hasMetadata = natsMsg_GetMetaData(&metadata, pointer) == NATS_OK;
        const std::uint64_t count = hasMetadata ? metadata->NumDelivered : 1;
        jsMsgMetaData_Destroy(metadata);
        deliveries.push_back(std::make_shared<Delivery>(std::move(message),
            std::string(natsMsg_GetData(pointer), std::size_t(natsMsg_GetDataLength(pointer))), count));
    }
    natsMsgList_Destroy(&list);
    return deliveries;
}

// By what the consumer has before it, and not by what the stream holds: a server that was killed may find
// jobs again that had been removed, and knows all the same that they were acknowledged.
std::optional<bool> JobQueue::isEmpty()
{
    jsConsumerInfo* information = nullptr;
    if (js_GetConsumerInfo(&information, m_implementation->stream.get(), m_implementation->name.c_str(),
            ConsumerName, nullptr, nullptr)
        != NATS_OK)
        return std::nullopt;
    const bool isEmpty = information->NumPending == 0 && information->NumAckPending == 0;
    jsConsumerInfo_Destroy(information);
    return isEmpty;
}

// When the server does not take it the job comes again, which does no harm: its result has the same name.
void JobQueue::acknowledge(const Delivery& delivery)
{
    const std::scoped_lock guard(delivery.m_message->lock);
    natsMsg_AckSync(delivery.m_message->pointer.get(), nullptr, nullptr);
}

void JobQueue::extend(const Delivery& delivery)
{
    const std::scoped_lock guard(delivery.m_message->lock);
    natsMsg_InProgress(delivery.m_message->pointer.get(), nullptr);
}

void JobQueue::bury(const Delivery& delivery, const std::string& text)
{
    jsPubAck* stored = nullptr;
    const natsStatus status
        = js_Publish(&stored, m_implementation->stream.get(), (m_implementation->name + ".dead").c_str(),
            text.data(), static_cast<int>(text.size()), nullptr, nullptr);
    jsPubAck_Destroy(stored);
    if (status != NATS_OK)
        return; // It comes again.
    const std::scoped_lock guard(delivery.m_message->lock);
    natsMsg_Term(delivery.m_message->pointer.get(), nullptr);
}

} // namespace caddis::tool
