// What this browser remembers: theme, favourites, the view last used.

/** @template T @param {string} name @param {T} otherwise @returns {T} */
export function recall(name, otherwise) {
    try {
        const text = localStorage.getItem(`morquil.${name}`);
        return text === null ? otherwise : JSON.parse(text);
    } catch {
        return otherwise;
    }
}

/** A browser that stores nothing forgets; that is all. @param {string} name @param {unknown} value */
export function remember(name, value) {
    try {
        localStorage.setItem(`morquil.${name}`, JSON.stringify(value));
    } catch {
        console.info(`The browser does not store ${name}.`);
    }
}

export const favourites = () => new Set(recall('favourites', /** @type {string[]} */ ([])));

/** @param {string} property @returns {boolean} whether it is one now */
export function toggleFavourite(property) {
    const all = favourites();
    const isOne = !all.delete(property);
    if (isOne) {
        all.add(property);
    }
    remember('favourites', [...all]);
    return isOne;
}
