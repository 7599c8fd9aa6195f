const clock = new Intl.DateTimeFormat('en-GB', { hour: '2-digit', minute: '2-digit', second: '2-digit' });
const day = new Intl.DateTimeFormat('en-GB', { day: '2-digit', month: 'short' });

/** The time, with the day unless it is today. @param {string | number | null | undefined} moment */
export function timeText(moment) {
    if (moment === null || moment === undefined) {
        return '';
    }
    const time = new Date(moment);
    const isToday = time.toDateString() === new Date().toDateString();
    return isToday ? clock.format(time) : `${day.format(time)} ${clock.format(time)}`;
}

/** The same with milliseconds, for lists where the order matters. @param {string} moment */
export function exactTimeText(moment) {
    return `${timeText(moment)}.${String(new Date(moment).getMilliseconds()).padStart(3, '0')}`;
}
