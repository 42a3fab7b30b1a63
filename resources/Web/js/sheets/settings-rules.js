// What the settings form accepts, said beside the field when it does not.
(() => {
  'use strict';

  const counts = [3, 5, 7, 10];
  const toleranceRange = [1, 30];

  /** "7,5" and "7.5" are the same number; NaN for anything else. */
  function decimal(value) {
    const trimmed = value.trim().replace(',', '.');
    return /^\d+(\.\d+)?$/.test(trimmed) ? Number(trimmed) : NaN;
  }

  function keyFault(value, had, cleared) {
    if (/\s/.test(value.trim())) return 'A key has no blanks inside.';
    if (!value.trim() && had && !cleared) return 'Type a key, or press Clear to remove the stored one.';
    return '';
  }

  function toleranceFault(value) {
    const [low, high] = toleranceRange;
    const size = decimal(value);
    return size >= low && size <= high ? '' : `Enter a number from ${low} to ${high}.`;
  }

  /** Faults by field name; an empty object when everything can be saved. */
  function faults(form) {
    const found = {
      aiModel: form.aiModel.trim() ? '' : 'Name a model, or take one of those below.',
      tinkerApiKey: keyFault(form.tinkerApiKey, form.had.tinkerApiKey, form.cleared.tinkerApiKey),
      openaiApiKey: keyFault(form.openaiApiKey, form.had.openaiApiKey, form.cleared.openaiApiKey),
      bpmTolerance: toleranceFault(form.bpmTolerance),
    };
    return Object.fromEntries(Object.entries(found).filter(([, words]) => words));
  }

  /** The form's values in the types in which they are stored. */
  const record = (form) => ({
    aiModel: form.aiModel.trim(),
    tinkerApiKey: form.tinkerApiKey.trim(),
    openaiApiKey: form.openaiApiKey.trim(),
    recommendationCount: Number(form.recommendationCount),
    bpmTolerance: decimal(form.bpmTolerance),
    autoSuggestTracks: form.autoSuggestTracks,
    theme: form.theme,
  });

  Velmor.settingsRules = { counts, faults, record };
})();
