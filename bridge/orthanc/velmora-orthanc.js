// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What the plugin adds to the study page of Orthanc Explorer: buttons that hand the study to a measurement application,
// and the charts that came back. Orthanc Explorer is made with jQuery 1.7 and jQuery Mobile 1.1; the plugin puts the
// list of the applications, velmoraApplications, before this text.
//
// All that comes out of the archive is text to this page: it goes through text() and attr() only, never through html.
(function (applications) {
  'use strict';

  // PS3.6 A: what the charts are stored as.
  var SECONDARY_CAPTURE = '1.2.840.10008.5.1.4.1.1.7';
  // The page shows at most so many charts, the newest.
  var MOST_CHARTS = 50;

  var STYLE =
    '#velmora-measure .ui-btn-text { white-space: normal; overflow-wrap: anywhere; }' +
    '#velmora-charts .velmora-preview { float: left; width: 240px; height: 180px; margin-right: 1em;' +
    ' background: #fff; border: 1px solid #ccc; overflow: hidden; white-space: normal; }' +
    '#velmora-charts .velmora-preview img { width: 100%; height: 100%; object-fit: contain; }' +
    '#velmora-charts .ui-li-heading { white-space: normal; overflow-wrap: anywhere; }' +
    '#velmora-charts .velmora-chart:after { content: ""; display: block; clear: both; }' +
    '#velmora-measure a:focus, #velmora-charts a:focus { outline: 3px solid #387bbe; outline-offset: 2px; }' +
    '#velmora-charts a:focus { outline-offset: -3px; }';

  var shownStudy = null;

  // As velmora-link takes them (bridge/dicom/Uid.h).
  function isUid(text) {
    return typeof text === 'string' && text.length <= 64 && /^[0-9]+(\.[0-9]+)+$/.test(text);
  }

  function textOf(tags, name) {
    return tags && typeof tags[name] === 'string' ? tags[name].trim() : '';
  }

  function getJson(path) {
    return $.ajax({ url: '../' + path, dataType: 'json', cache: false });
  }

  // Reads something for each of the names, whatever fails; then calls finish(answers, how many failed).
  function getAll(names, pathOf, finish) {
    var answers = [], failures = 0, left = names.length;
    if (left === 0) finish(answers, failures);
    $.each(names, function (index, name) {
      getJson(pathOf(name))
        .done(function (answer) {
          answers.push({ name: name, answer: answer });
        })
        .fail(function () {
          failures += 1;
        })
        .always(function () {
          left -= 1;
          if (left === 0) finish(answers, failures);
        });
    });
  }

  // The places of what is added. Made once, filled for every study.
  function ensurePlaces() {
    if ($('#velmora-measure').length > 0) return;
    $('<style>').text(STYLE).appendTo('head');
    $('<div>').attr({ id: 'velmora-measure', role: 'group', 'aria-label': 'Measure' }).insertAfter('#study-info');
    $('<ul>')
      .attr({
        id: 'velmora-charts',
        'data-role': 'listview',
        'data-inset': 'true',
        'data-theme': 'd',
        'data-divider-theme': 'c'
      })
      .prependTo($('#list-series').parent())
      .listview();
  }

  // The buttons.

  function linkOf(studyInstanceUid, application) {
    var link = 'velmora-link:study?uid=' + encodeURIComponent(studyInstanceUid);
    return application ? link + '&application=' + encodeURIComponent(application) : link;
  }

  function measureButton(text, href) {
    return $('<a>')
      .attr({ href: href, 'data-role': 'button', 'data-icon': 'forward', 'data-theme': 'b' })
      .text(text);
  }

  function showButtons(studyInstanceUid) {
    var place = $('#velmora-measure').empty();
    if (!isUid(studyInstanceUid)) {
      place.append($('<p>').text('This study cannot be measured: its Study Instance UID is damaged.'));
    } else if (applications.length === 0) {
      place.append(measureButton('Measure', linkOf(studyInstanceUid)));
    } else {
      $.each(applications, function (index, application) {
        place.append(measureButton('Measure with ' + application.name,
                                   linkOf(studyInstanceUid, application.bundleIdentifier)));
      });
    }
    place.find('a').buttonMarkup();
  }

  // The charts.

  function refillCharts(items) {
    var place = $('#velmora-charts').empty();
    place.append($('<li>').attr('data-role', 'list-divider').text('Charts'));
    $.each(items, function (index, item) {
      place.append(item);
    });
    place.listview('refresh');
  }

  function note(text) {
    return $('<li>').append($('<p>').attr('role', 'status').text(text));
  }

  // "20240131" and "101112.123" as people read them; what is not such stays as it is.
  function readableDate(date) {
    return date.replace(/^(\d{4})(\d{2})(\d{2})$/, '$1-$2-$3');
  }
  function readableTime(time) {
    return time.replace(/^(\d{2})(\d{2})(\d{2})?(\.\d*)?$/, function (all, hours, minutes, seconds) {
      return hours + ':' + minutes + (seconds ? ':' + seconds : '');
    });
  }

  function numberOf(tags) {
    return parseInt(textOf(tags, 'InstanceNumber'), 10) || 0;
  }

  function chartOf(instance, tags) {
    return {
      id: instance,
      description: textOf(tags, 'SeriesDescription') || 'Chart',
      date: textOf(tags, 'ContentDate'),
      time: textOf(tags, 'ContentTime'),
      number: numberOf(tags)
    };
  }

  function newestFirst(a, b) {
    var when = (b.date + b.time).localeCompare(a.date + a.time);
    return when !== 0 ? when : b.number - a.number;
  }

  function chartItem(chart) {
    var when = (readableDate(chart.date) + ' ' + readableTime(chart.time)).trim();
    var preview = $('<span>').addClass('velmora-preview');
    $('<img>')
      .attr('alt', 'Preview of the chart "' + chart.description + '"' + (when ? ', ' + when : ''))
      .bind('error', function () {
        preview.text('There is no preview of this chart.');
      })
      .attr('src', '../instances/' + encodeURIComponent(chart.id) + '/preview')
      .appendTo(preview);
    return $('<li>').append(
      $('<a>')
        .addClass('velmora-chart')
        .attr('href', '#instance?uuid=' + encodeURIComponent(chart.id))
        .append(preview, $('<h3>').text(chart.description), $('<p>').text(when)));
  }

  // The mark of a series that velmora-link has made.
  function mayHoldCharts(series) {
    return textOf(series.MainDicomTags, 'Modality') === 'OT' &&
           textOf(series.MainDicomTags, 'Manufacturer') === 'Velmora';
  }

  // The instances of a series that were added last: each has a greater number than those before it.
  function latestOf(instances) {
    instances.sort(function (a, b) {
      return numberOf(b.MainDicomTags) - numberOf(a.MainDicomTags);
    });
    return $.map(instances.slice(0, MOST_CHARTS), function (instance) {
      return instance.ID;
    });
  }

  function showCharts(study, isCurrent) {
    refillCharts([note('Reading the charts ...')]);

    function show(tagsOfAll, failures, leftOut) {
      if (!isCurrent()) return;
      var charts = [];
      $.each(tagsOfAll, function (index, each) {
        if (textOf(each.answer, 'SOPClassUID') === SECONDARY_CAPTURE) charts.push(chartOf(each.name, each.answer));
      });
      charts.sort(newestFirst);
      leftOut += Math.max(0, charts.length - MOST_CHARTS);
      var items = $.map(charts.slice(0, MOST_CHARTS), chartItem);
      if (leftOut > 0) items.push(note('Older charts that are not shown here: ' + leftOut));
      if (failures > 0) items.push(note('Some charts could not be read.'));
      if (items.length === 0) items.push(note('There are no charts in this study.'));
      refillCharts(items);
    }

    getJson('studies/' + encodeURIComponent(study) + '/series')
      .fail(function () {
        if (isCurrent()) refillCharts([note('The charts could not be read.')]);
      })
      .done(function (allSeries) {
        var ids = $.map($.grep(allSeries, mayHoldCharts), function (series) {
          return series.ID;
        });
        getAll(ids, function (id) {
          return 'series/' + encodeURIComponent(id) + '/instances';
        }, function (instancesOfAll, seriesFailures) {
          var instances = [], leftOut = 0;
          $.each(instancesOfAll, function (index, each) {
            var latest = latestOf(each.answer);
            leftOut += each.answer.length - latest.length;
            instances = instances.concat(latest);
          });
          getAll(instances, function (id) {
            return 'instances/' + encodeURIComponent(id) + '/simplified-tags';
          }, function (tagsOfAll, failures) {
            show(tagsOfAll, failures + seriesFailures, leftOut);
          });
        });
      });
  }

  function showStudy() {
    var study = $.mobile.pageData && $.mobile.pageData.active === 'study' ? $.mobile.pageData.uuid : null;
    if (!study) return;
    shownStudy = study;
    function isCurrent() {
      return shownStudy === study;
    }
    ensurePlaces();
    $('#velmora-measure').empty();
    getJson('studies/' + encodeURIComponent(study)).done(function (answer) {
      if (isCurrent()) showButtons(textOf(answer.MainDicomTags, 'StudyInstanceUID'));
    });
    showCharts(study, isCurrent);
  }

  $('#study').live('pageshow', showStudy);
  $(function () {
    // From one study to another the page stays and only the address changes.
    $(window).hashchange(function () {
      if ($.mobile.pageData && $.mobile.pageData.active === 'study' && $.mobile.pageData.uuid !== shownStudy) {
        showStudy();
      }
    });
  });
}(velmoraApplications));
